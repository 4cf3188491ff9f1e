#include "codecs/PngDecoder.h"
#include "codecs/ByteStream.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PictureBuilder.h"
#include <algorithm>
#include <bit>
#include <cmath>
#include <csetjmp>
#include <cstdlib>
#include <cstring>

#include <png.h>

namespace pixelhain {

namespace {

// What no pixel depends on. The library would keep it all, and compressed texts of a few
// kilobytes unpack to megabytes each. Every name ends with a NUL.
constexpr char unusedChunks[] = "bKGD\0eXIf\0hIST\0iTXt\0oFFs\0pCAL\0"
                                "pHYs\0sCAL\0sPLT\0tEXt\0tIME\0zTXt";

/// One PNG reader with its error exits. The library leaves a call by longjmp, so every call
/// goes through `guarded`, and nothing with a destructor lives between both ends.
class Reader {
public:
    explicit Reader(ByteSource const& bytes)
        : stream_(bytes)
        , pieceBytes_(
              static_cast<std::size_t>(std::clamp<std::uint64_t>(bytes.size() / 256, 64, 8192)))
    {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, leave, ignore);
        info = png != nullptr ? png_create_info_struct(png) : nullptr;
    }
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
    Reader(Reader const&) = delete;
    Reader& operator=(Reader const&) = delete;

    template <typename Step> bool guarded(Step step)
    {
        if (setjmp(jump_) != 0)
            return false;
        step();
        return true;
    }

    bool start()
    {
        return info != nullptr && guarded([this] {
            png_set_read_fn(png, this, feed);
            png_set_compression_buffer_size(png, pieceBytes_);
            png_set_user_limits(png, DecodeLimits::side, DecodeLimits::side);
            png_set_chunk_malloc_max(png, DecodeLimits::colorProfile * 2);
            png_set_crc_action(png, PNG_CRC_WARN_USE, PNG_CRC_WARN_DISCARD);
            png_set_benign_errors(png, 1);
            png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER,
                reinterpret_cast<png_const_bytep>(unusedChunks), sizeof unusedChunks / 5);
            png_read_info(png, info);
        });
    }

    png_structp png = nullptr;
    png_infop info = nullptr;

private:
    static void leave(png_structp png, png_const_charp)
    {
        std::longjmp(static_cast<Reader*>(png_get_error_ptr(png))->jump_, 1);
    }
    static void ignore(png_structp, png_const_charp) { }
    static void feed(png_structp png, png_bytep into, std::size_t length)
    {
        if (static_cast<Reader*>(png_get_io_ptr(png))->stream_.read(into, length) != length)
            png_error(png, "cut");
    }

    ByteStream stream_;
    std::size_t pieceBytes_; ///< read at once; of a cut file up to as many are lost
    std::jmp_buf jump_ {};
};

// A gamma alone is as often wrong as right and is left aside, as others do; together with
// primaries it is a full description.
std::vector<std::uint8_t> describedColors(png_structp png, png_infop info)
{
    int intent = 0;
    if (png_get_sRGB(png, info, &intent) != 0)
        return {};
    double gamma = 0;
    Chromaticities colors {};
    if (png_get_gAMA(png, info, &gamma) == 0
        || png_get_cHRM(png, info, &colors.white[0], &colors.white[1], &colors.red[0],
               &colors.red[1], &colors.green[0], &colors.green[1], &colors.blue[0], &colors.blue[1])
            == 0)
        return {};
    Chromaticities const srgb { { 0.3127, 0.3290 }, { 0.64, 0.33 }, { 0.30, 0.60 },
        { 0.15, 0.06 } };
    auto const isNear = [](double const(&a)[2], double const(&b)[2]) {
        return std::abs(a[0] - b[0]) < 0.005 && std::abs(a[1] - b[1]) < 0.005;
    };
    auto const hasSrgbColors = isNear(colors.white, srgb.white) && isNear(colors.red, srgb.red)
        && isNear(colors.green, srgb.green) && isNear(colors.blue, srgb.blue);
    if (gamma <= 0.01 || (hasSrgbColors && std::abs(gamma - 1 / 2.2) < 0.01))
        return {};
    return makeProfile(colors, 1 / gamma);
}

std::vector<std::uint8_t> profileOf(Reader& reader)
{
    png_charp name = nullptr;
    png_bytep data = nullptr;
    png_uint_32 length = 0;
    int compression = 0;
    auto const isRead = reader.guarded([&] {
        if (png_get_iCCP(reader.png, reader.info, &name, &compression, &data, &length) == 0)
            data = nullptr;
    });
    if (isRead && data != nullptr && length <= DecodeLimits::colorProfile)
        return { data, data + length };
    return describedColors(reader.png, reader.info);
}

struct Plan {
    PixelSize size;
    bool isDeep = false; ///< rows of 16 bits, colours converted row by row
    bool isGrey = false;
    bool isInterlaced = false;
    PixelFormat format = PixelFormat::opaque;
};

bool planRows(Reader& reader, bool keepDepth, Plan& plan)
{
    return reader.guarded([&] {
        auto* png = reader.png;
        auto* info = reader.info;
        auto const colorType = png_get_color_type(png, info);
        plan.isDeep = keepDepth && png_get_bit_depth(png, info) == 16;
        plan.isGrey = (colorType & PNG_COLOR_MASK_COLOR) == 0;
        plan.isInterlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
        auto const hasAlpha = (colorType & PNG_COLOR_MASK_ALPHA) != 0
            || png_get_valid(png, info, PNG_INFO_tRNS) != 0;
        plan.format = hasAlpha ? PixelFormat::straight : PixelFormat::opaque;
        png_set_expand(png);
        if (plan.isGrey)
            png_set_gray_to_rgb(png);
        if (plan.isDeep) {
            if constexpr (std::endian::native == std::endian::little)
                png_set_swap(png);
        } else {
            png_set_scale_16(png);
            png_set_bgr(png);
        }
        png_set_add_alpha(png, plan.isDeep ? 0xFFFF : 0xFF, PNG_FILLER_AFTER);
        if (plan.isInterlaced)
            png_set_interlace_handling(png);
        png_read_update_info(png, info);
        auto const unit = std::size_t { plan.isDeep ? 8U : 4U };
        if (png_get_rowbytes(png, info) != static_cast<std::size_t>(plan.size.width) * unit)
            png_error(png, "unexpected layout");
    });
}

// Whether all rows came.
bool readRows(Reader& reader, Plan const& plan, DeepRowConverter const& deep,
    PictureBuilder& builder, std::vector<std::uint16_t>& wide)
{
    return reader.guarded([&] {
        for (int y = 0; y < plan.size.height; ++y) {
            auto* row = builder.nextRow();
            png_read_row(reader.png,
                plan.isDeep ? reinterpret_cast<std::uint8_t*>(wide.data()) : row, nullptr);
            if (plan.isDeep)
                deep.convert(wide.data(), row, plan.size.width);
            builder.commitRow();
        }
    });
}

struct Free {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
};

// All passes are needed before the first row is final. Pages that no pass reached cost nothing.
bool readPasses(
    Reader& reader, Plan const& plan, DeepRowConverter const& deep, PictureBuilder& builder)
{
    auto const stride = static_cast<std::size_t>(plan.size.width) * (plan.isDeep ? 8U : 4U);
    auto const height = static_cast<std::size_t>(plan.size.height);
    if (stride * height > DecodeLimits::memory)
        return false;
    std::unique_ptr<std::uint8_t, Free> const pixels(
        static_cast<std::uint8_t*>(std::calloc(height, stride)));
    if (!pixels)
        return false;
    bool hasFirstPass = false;
    auto const isComplete = reader.guarded([&] {
        for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass) {
            for (std::size_t y = 0; y < height; ++y)
                png_read_row(reader.png, nullptr, pixels.get() + y * stride);
            hasFirstPass = true;
        }
    });
    for (std::size_t y = 0; hasFirstPass && y < height; ++y) {
        auto* row = builder.nextRow();
        auto const* from = pixels.get() + y * stride;
        if (plan.isDeep)
            deep.convert(reinterpret_cast<std::uint16_t const*>(from), row, plan.size.width);
        else
            std::memcpy(row, from, stride);
        builder.commitRow();
    }
    return isComplete;
}

std::optional<DecodedImage> decode(ByteSource const& bytes, int maxPixel, bool& isComplete)
{
    Reader reader(bytes);
    if (!reader.start())
        return {};
    Plan plan;
    plan.size = { static_cast<int>(png_get_image_width(reader.png, reader.info)),
        static_cast<int>(png_get_image_height(reader.png, reader.info)) };
    auto const profile = profileOf(reader);
    auto const isDeepColor
        = png_get_bit_depth(reader.png, reader.info) == 16 && changesColors(profile);
    DeepRowConverter const deep(isDeepColor ? ByteSpan(profile) : ByteSpan());
    PictureBuilder builder;
    if (!planRows(reader, deep.isUsable(), plan)
        || !builder.begin(plan.size, fittedSize(plan.size, maxPixel), plan.format))
        return {};
    std::vector<std::uint16_t> wide(
        plan.isDeep ? static_cast<std::size_t>(plan.size.width) * 4 : 0);
    isComplete = plan.isInterlaced ? readPasses(reader, plan, deep, builder)
                                   : readRows(reader, plan, deep, builder, wide);
    DecodedImage image;
    image.bitmap = builder.finish(plan.isDeep ? ByteSpan() : ByteSpan(profile),
        plan.isGrey ? Channels::grey : Channels::color);
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

} // namespace

std::optional<DecodedImage> decodePng(ByteSource const& bytes, int maxPixel)
{
    bool isComplete = false;
    return decode(bytes, maxPixel, isComplete);
}

std::optional<DecodedImage> decodeCompletePng(ByteSource const& bytes)
{
    bool isComplete = false;
    auto image = decode(bytes, 0, isComplete);
    return isComplete ? std::move(image) : std::nullopt;
}

} // namespace pixelhain
