#include "codecs/TiffDecoder.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PictureBuilder.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace pixelhain {

namespace {

struct Page {
    TIFF* tiff = nullptr;
    PixelSize size;
    int bits = 1;
    int samples = 1;
    int photometric = 0;
    int format = SAMPLEFORMAT_UINT;
    bool isInterleaved = true;
    bool isTiled = false;
    bool hasAlpha = false; ///< the first sample behind the colours
    bool isPremultiplied = false;
    PixelSize block; ///< of a tile, or of a strip
};

Page pageOf(TiffFile const& file, PixelSize size)
{
    Page page;
    page.tiff = file.get();
    page.size = size;
    page.bits = file.number<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    page.samples = file.number<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    page.photometric = file.number<std::uint16_t>(TIFFTAG_PHOTOMETRIC, 0);
    page.format = file.number<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    page.isInterleaved = page.samples == 1
        || file.number<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG)
            == PLANARCONFIG_CONTIG;
    page.isTiled = TIFFIsTiled(page.tiff) != 0;
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    if (TIFFGetFieldDefaulted(page.tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1 && count > 0
        && kinds != nullptr) {
        page.hasAlpha = kinds[0] != EXTRASAMPLE_UNSPECIFIED;
        page.isPremultiplied = kinds[0] == EXTRASAMPLE_ASSOCALPHA;
    }
    auto const wide = static_cast<std::uint32_t>(size.width);
    auto const high = static_cast<std::uint32_t>(size.height);
    auto const width = page.isTiled ? file.number<std::uint32_t>(TIFFTAG_TILEWIDTH, 0) : wide;
    auto const height = file.number<std::uint32_t>(
        page.isTiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, high);
    auto const most = std::uint32_t { DecodeLimits::side } * 2;
    page.block = { static_cast<int>(std::min(width, most)),
        static_cast<int>(page.isTiled ? std::min(height, most) : std::min(height, high)) };
    return page;
}

/// Interleaved samples as they are stored, in bands as high as a strip or tile: for what the
/// library does not convert itself.
class Bands {
public:
    explicit Bands(Page const& page)
        : page_(page)
        , pixelBytes_(static_cast<std::size_t>(page.samples * page.bits / 8))
        , rowBytes_(static_cast<std::size_t>(page.size.width) * pixelBytes_)
    {
        auto const rows = static_cast<std::size_t>(page.block.height);
        auto const tileBytes = page.isTiled
            ? static_cast<std::size_t>(std::max<tmsize_t>(TIFFTileSize(page.tiff), 0))
            : 0;
        auto const stated = static_cast<std::size_t>(page.block.width) * rows * pixelBytes_;
        if (rowBytes_ * rows + tileBytes > DecodeLimits::memory
            || (page.isTiled && tileBytes < stated))
            return;
        band_.resize(rowBytes_ * rows);
        tile_.resize(tileBytes);
    }

    [[nodiscard]] bool isUsable() const { return !band_.empty(); }

    /// The band that begins at row `top`; false if a part of it cannot be read.
    bool read(int top)
    {
        if (!page_.isTiled) {
            auto const strip = TIFFComputeStrip(page_.tiff, static_cast<std::uint32_t>(top), 0);
            return TIFFReadEncodedStrip(
                       page_.tiff, strip, band_.data(), static_cast<tmsize_t>(band_.size()))
                > 0;
        }
        auto const unit = static_cast<std::size_t>(page_.block.width) * pixelBytes_;
        for (int left = 0; left < page_.size.width; left += page_.block.width) {
            if (TIFFReadTile(page_.tiff, tile_.data(), static_cast<std::uint32_t>(left),
                    static_cast<std::uint32_t>(top), 0, 0)
                < 0)
                return false;
            auto const at = static_cast<std::size_t>(left) * pixelBytes_;
            auto const count = std::min(unit, rowBytes_ - at);
            for (std::size_t y = 0; y < static_cast<std::size_t>(page_.block.height); ++y)
                std::memcpy(band_.data() + y * rowBytes_ + at, tile_.data() + y * unit, count);
        }
        return true;
    }

    [[nodiscard]] std::uint8_t const* row(int y) const
    {
        return band_.data() + static_cast<std::size_t>(y) * rowBytes_;
    }

private:
    Page const& page_;
    std::size_t pixelBytes_;
    std::size_t rowBytes_;
    std::vector<std::uint8_t> band_;
    std::vector<std::uint8_t> tile_;
};

// Floating point has no agreed white; photos hold light with 1 as white.
std::uint8_t encodedLight(std::uint8_t const* at)
{
    float light = 0;
    std::memcpy(&light, at, sizeof light);
    if (!(light > 0))
        return 0;
    light = std::min(light, 1.0F);
    auto const encoded
        = light <= 0.0031308F ? light * 12.92F : 1.055F * std::pow(light, 1 / 2.4F) - 0.055F;
    return static_cast<std::uint8_t>(std::lround(encoded * 255));
}

void putFloats(Page const& page, std::uint8_t const* in, std::uint8_t* out)
{
    auto const step = static_cast<std::ptrdiff_t>(page.samples) * 4;
    for (int x = 0; x < page.size.width; ++x, in += step, out += 4) {
        for (int c = 0; c < 3; ++c)
            out[2 - c] = encodedLight(in + (page.samples < 3 ? 0 : c * 4));
        out[3] = 255;
    }
}

void putInk(Page const& page, std::uint8_t const* in, std::uint8_t* out)
{
    auto const unit = page.bits / 8;
    auto const step = static_cast<std::ptrdiff_t>(page.samples) * unit;
    for (int x = 0; x < page.size.width; ++x, in += step, out += 4) {
        for (int c = 0; c < 4; ++c) {
            std::uint16_t deep = 0;
            if (unit == 2)
                std::memcpy(&deep, in + std::ptrdiff_t(c) * 2, 2);
            out[c] = unit == 1 ? in[c] : static_cast<std::uint8_t>((deep + 128) / 257);
        }
    }
}

void putDeep(Page const& page, DeepRowConverter const& converter, std::vector<std::uint16_t>& wide,
    std::uint8_t const* in, std::uint8_t* out)
{
    auto const step = static_cast<std::ptrdiff_t>(page.samples) * 2;
    auto* at = wide.data();
    for (int x = 0; x < page.size.width; ++x, in += step, at += 4) {
        std::memcpy(at, in, 6);
        at[3] = 0xFFFF;
        if (page.hasAlpha)
            std::memcpy(at + 3, in + 6, 2);
    }
    converter.convert(wide.data(), out, page.size.width);
}

template <typename Put> bool readBands(Page const& page, PictureBuilder& builder, Put put)
{
    Bands bands(page);
    if (!bands.isUsable())
        return false;
    for (int top = 0; top < page.size.height; top += page.block.height) {
        if (!bands.read(top))
            return top > 0;
        auto const rows = std::min(page.block.height, page.size.height - top);
        for (int y = 0; y < rows; ++y) {
            put(bands.row(y), builder.nextRow());
            builder.commitRow();
        }
    }
    return true;
}

/// The library's own conversion to RGBA, band by band.
class RgbaBands {
public:
    explicit RgbaBands(TIFF* tiff)
    {
        std::array<char, 1024> message {};
        isOpen_ = TIFFRGBAImageOK(tiff, message.data()) != 0
            && TIFFRGBAImageBegin(&image_, tiff, 1, message.data()) != 0;
        if (isOpen_)
            image_.req_orientation = image_.orientation;
    }
    ~RgbaBands()
    {
        if (isOpen_)
            TIFFRGBAImageEnd(&image_);
    }
    RgbaBands(RgbaBands const&) = delete;
    RgbaBands& operator=(RgbaBands const&) = delete;

    [[nodiscard]] bool isOpen() const { return isOpen_; }
    [[nodiscard]] bool hasAlpha() const { return image_.alpha != 0; }

    bool read(PictureBuilder& builder, Page const& page)
    {
        auto const width = static_cast<std::size_t>(page.size.width);
        auto const perBand = bandRows(page);
        if (width * static_cast<std::size_t>(perBand) * 4 > DecodeLimits::memory / 2)
            return false;
        std::vector<std::uint32_t> raster(width * static_cast<std::size_t>(perBand));
        for (int top = 0; top < page.size.height; top += perBand) {
            auto const rows = std::min(perBand, page.size.height - top);
            std::fill(raster.begin(), raster.end(), 0U);
            image_.row_offset = top;
            image_.col_offset = 0;
            if (TIFFRGBAImageGet(
                    &image_, raster.data(), image_.width, static_cast<std::uint32_t>(rows))
                == 0)
                return keepStart(raster, builder, page, rows) || top > 0;
            for (int y = 0; y < rows; ++y)
                putRow(raster.data() + static_cast<std::size_t>(y) * width, builder, page);
        }
        return true;
    }

private:
    // Whole strips or rows of tiles: a part of one would be decoded once more for the next.
    static int bandRows(Page const& page)
    {
        constexpr int enough = 64;
        auto const unit = std::max(1, page.block.height);
        auto const units = std::max(1, enough / unit);
        return std::min(unit * units, page.size.height);
    }

    // Of a band that broke off, the rows that were written.
    static bool keepStart(std::vector<std::uint32_t> const& raster, PictureBuilder& builder,
        Page const& page, int rows)
    {
        auto const width = static_cast<std::size_t>(page.size.width);
        auto const written = std::find_if(
            raster.rbegin(), raster.rend(), [](std::uint32_t pixel) { return pixel != 0; });
        auto const count = static_cast<std::size_t>(raster.rend() - written) / width;
        for (std::size_t y = 0; y < count && y < static_cast<std::size_t>(rows); ++y)
            putRow(raster.data() + y * width, builder, page);
        return count > 0;
    }

    static void putRow(std::uint32_t const* in, PictureBuilder& builder, Page const& page)
    {
        auto* out = builder.nextRow();
        for (int x = 0; x < page.size.width; ++x, out += 4) {
            out[0] = static_cast<std::uint8_t>(TIFFGetB(in[x]));
            out[1] = static_cast<std::uint8_t>(TIFFGetG(in[x]));
            out[2] = static_cast<std::uint8_t>(TIFFGetR(in[x]));
            out[3] = static_cast<std::uint8_t>(TIFFGetA(in[x]));
        }
        builder.commitRow();
    }

    TIFFRGBAImage image_ {};
    bool isOpen_ = false;
};

std::optional<DecodedImage> finished(
    PictureBuilder& builder, ByteSpan profile, Channels channels, bool isIndexed)
{
    DecodedImage image;
    image.bitmap = builder.finish(profile, channels);
    image.isIndexed = isIndexed;
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

std::optional<DecodedImage> decodeRgba(Page const& page, PixelSize target, ByteSpan profile)
{
    RgbaBands bands(page.tiff);
    PictureBuilder builder;
    if (!bands.isOpen()
        || !builder.begin(
            page.size, target, bands.hasAlpha() ? PixelFormat::premultiplied : PixelFormat::opaque)
        || !bands.read(builder, page))
        return {};
    auto const isGrey
        = page.photometric == PHOTOMETRIC_MINISBLACK || page.photometric == PHOTOMETRIC_MINISWHITE;
    return finished(builder, profile, isGrey ? Channels::grey : Channels::color,
        page.photometric == PHOTOMETRIC_PALETTE);
}

bool isInk(Page const& page)
{
    return page.format == SAMPLEFORMAT_UINT && page.isInterleaved
        && page.photometric == PHOTOMETRIC_SEPARATED && page.samples >= 4
        && (page.bits == 8 || page.bits == 16);
}

bool isDeepColor(Page const& page, ByteSpan profile)
{
    return page.format == SAMPLEFORMAT_UINT && page.isInterleaved
        && page.photometric == PHOTOMETRIC_RGB && page.bits == 16
        && page.samples >= (page.hasAlpha ? 4 : 3) && !page.isPremultiplied
        && changesColors(profile);
}

std::optional<DecodedImage> decodeFloats(Page const& page, PixelSize target)
{
    PictureBuilder builder;
    auto const put = [&](std::uint8_t const* in, std::uint8_t* out) { putFloats(page, in, out); };
    if (page.bits != 32 || !page.isInterleaved
        || !builder.begin(page.size, target, PixelFormat::opaque) || !readBands(page, builder, put))
        return {};
    return finished(builder, {}, Channels::color, false);
}

std::optional<DecodedImage> decodeInk(Page const& page, PixelSize target, ByteSpan profile)
{
    PictureBuilder builder;
    auto const put = [&](std::uint8_t const* in, std::uint8_t* out) { putInk(page, in, out); };
    if (!builder.begin(page.size, target, PixelFormat::cmyk) || !readBands(page, builder, put))
        return {};
    return finished(builder, profile, Channels::color, false);
}

std::optional<DecodedImage> decodeDeep(Page const& page, PixelSize target, ByteSpan profile)
{
    DeepRowConverter const converter(profile);
    std::vector<std::uint16_t> wide(static_cast<std::size_t>(page.size.width) * 4);
    PictureBuilder builder;
    auto const put = [&](std::uint8_t const* in, std::uint8_t* out) {
        putDeep(page, converter, wide, in, out);
    };
    auto const format = page.hasAlpha ? PixelFormat::straight : PixelFormat::opaque;
    if (!converter.isUsable() || !builder.begin(page.size, target, format)
        || !readBands(page, builder, put))
        return {};
    return finished(builder, {}, Channels::color, false);
}

} // namespace

std::optional<DecodedImage> decodeTiff(
    TiffFile const& file, PixelSize size, int maxPixel, ByteSpan profile)
{
    constexpr tmsize_t readable = 1024;
    auto const page = pageOf(file, size);
    auto const target = fittedSize(size, maxPixel);
    if (page.block.width <= 0 || page.block.height <= 0)
        return {};
    if (page.format == SAMPLEFORMAT_IEEEFP)
        return decodeFloats(page, target);
    if (isInk(page))
        return decodeInk(page, target, profile);
    if (isDeepColor(page, profile))
        return decodeDeep(page, target, profile);
    if (page.isTiled && TIFFTileSize(page.tiff) % readable != 0
        && file.number<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE) == COMPRESSION_NONE) {
        TiffFile const whole(file.bytes(), TiffFile::Access::whole);
        return whole.isOpen() ? decodeRgba(pageOf(whole, size), target, profile) : std::nullopt;
    }
    return decodeRgba(page, target, profile);
}

} // namespace pixelhain
