#include "support/ByteWriter.h"
#include "support/ImageWriters.h"
#include <array>
#include <cstring>

#include <tiffio.h>

namespace pixelhain {

namespace {

using Kind = TiffOptions::Kind;

struct MemoryFile {
    FileBytes bytes;
    std::size_t at = 0;
};

MemoryFile& fileOf(thandle_t handle)
{
    return *static_cast<MemoryFile*>(handle);
}

tmsize_t readFrom(thandle_t handle, void* into, tmsize_t length)
{
    auto& file = fileOf(handle);
    auto const there = file.at < file.bytes.size() ? file.bytes.size() - file.at : 0;
    auto const count = std::min(static_cast<std::size_t>(length), there);
    if (count > 0)
        std::memcpy(into, file.bytes.data() + file.at, count);
    file.at += count;
    return static_cast<tmsize_t>(count);
}

tmsize_t writeTo(thandle_t handle, void* from, tmsize_t length)
{
    auto& file = fileOf(handle);
    auto const end = file.at + static_cast<std::size_t>(length);
    if (file.bytes.size() < end)
        file.bytes.resize(end);
    if (length > 0)
        std::memcpy(file.bytes.data() + file.at, from, static_cast<std::size_t>(length));
    file.at = end;
    return length;
}

toff_t seekTo(thandle_t handle, toff_t offset, int whence)
{
    auto& file = fileOf(handle);
    auto const base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.at : file.bytes.size();
    file.at = base + static_cast<std::size_t>(offset);
    return file.at;
}

int closeIt(thandle_t)
{
    return 0;
}

toff_t sizeOf(thandle_t handle)
{
    return fileOf(handle).bytes.size();
}

void append16(FileBytes& out, unsigned value)
{
    auto const word = static_cast<std::uint16_t>(value);
    std::array<std::uint8_t, 2> raw {};
    std::memcpy(raw.data(), &word, 2);
    out.insert(out.end(), raw.begin(), raw.end());
}

void appendFloat(FileBytes& out, unsigned level)
{
    auto const encoded = static_cast<float>(level) / 255;
    auto const value = encoded * encoded; // near enough to sRGB's curve
    std::array<std::uint8_t, 4> raw {};
    std::memcpy(raw.data(), &value, 4);
    out.insert(out.end(), raw.begin(), raw.end());
}

void appendPixel(Kind kind, std::uint8_t const* rgba, FileBytes& out)
{
    auto const add = [&](unsigned value) { out.push_back(static_cast<std::uint8_t>(value)); };
    auto const addAll = [&](int count) { out.insert(out.end(), rgba, rgba + count); };
    switch (kind) {
    case Kind::rgb8:
    case Kind::ycbcrJpeg:
        addAll(3);
        break;
    case Kind::rgba8:
        addAll(4);
        break;
    case Kind::rgbaAssociated8:
        for (int c = 0; c < 3; ++c)
            add((rgba[c] * rgba[3] + 127U) / 255);
        add(rgba[3]);
        break;
    case Kind::rgb16:
        for (int c = 0; c < 3; ++c)
            append16(out, rgba[c] * 257U);
        break;
    case Kind::rgbFloat:
        for (int c = 0; c < 3; ++c)
            appendFloat(out, rgba[c]);
        break;
    case Kind::grey8:
        add(luma(rgba));
        break;
    case Kind::grey16:
        append16(out, luma(rgba) * 257);
        break;
    case Kind::palette:
        add(paletteIndex(rgba));
        break;
    case Kind::bilevel:
        add(luma(rgba) < 128 ? 1 : 0);
        break;
    case Kind::cmyk8:
        for (int c = 0; c < 3; ++c)
            add(255U - rgba[c]);
        add(0);
        break;
    }
}

struct Layout {
    int samples;
    int bits;
    int photometric;
};

Layout layoutOf(Kind kind)
{
    switch (kind) {
    case Kind::rgb8:
        return { 3, 8, PHOTOMETRIC_RGB };
    case Kind::rgba8:
    case Kind::rgbaAssociated8:
        return { 4, 8, PHOTOMETRIC_RGB };
    case Kind::rgb16:
        return { 3, 16, PHOTOMETRIC_RGB };
    case Kind::rgbFloat:
        return { 3, 32, PHOTOMETRIC_RGB };
    case Kind::grey8:
        return { 1, 8, PHOTOMETRIC_MINISBLACK };
    case Kind::grey16:
        return { 1, 16, PHOTOMETRIC_MINISBLACK };
    case Kind::bilevel:
        return { 1, 1, PHOTOMETRIC_MINISWHITE };
    case Kind::palette:
        return { 1, 8, PHOTOMETRIC_PALETTE };
    case Kind::cmyk8:
        return { 4, 8, PHOTOMETRIC_SEPARATED };
    case Kind::ycbcrJpeg:
        return { 3, 8, PHOTOMETRIC_YCBCR };
    }
    return {};
}

int compressionOf(TiffOptions const& options)
{
    using Packing = TiffOptions::Packing;
    if (options.kind == Kind::ycbcrJpeg)
        return COMPRESSION_JPEG;
    switch (options.packing) {
    case Packing::lzw:
        return COMPRESSION_LZW;
    case Packing::deflate:
        return COMPRESSION_ADOBE_DEFLATE;
    case Packing::packBits:
        return COMPRESSION_PACKBITS;
    case Packing::fax4:
        return COMPRESSION_CCITTFAX4;
    default:
        return COMPRESSION_NONE;
    }
}

void setColorMap(TIFF* tiff)
{
    std::array<std::array<std::uint16_t, 256>, 3> map {};
    for (unsigned i = 0; i < 256; ++i) {
        for (std::size_t c = 0; c < 3; ++c)
            map[c][i] = static_cast<std::uint16_t>(paletteColor(i, int(c)) * 257);
    }
    TIFFSetField(tiff, TIFFTAG_COLORMAP, map[0].data(), map[1].data(), map[2].data());
}

void setColorFields(TIFF* tiff, TiffOptions const& options)
{
    auto const layout = layoutOf(options.kind);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, layout.photometric);
    if (options.kind == Kind::ycbcrJpeg)
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    if (options.kind == Kind::rgbFloat)
        TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    if (layout.samples == 4 && layout.photometric == PHOTOMETRIC_RGB) {
        std::uint16_t const extra
            = options.kind == Kind::rgba8 ? EXTRASAMPLE_UNASSALPHA : EXTRASAMPLE_ASSOCALPHA;
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
    }
    if (!options.profile.empty())
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(options.profile.size()),
            options.profile.data());
    if (options.kind == Kind::palette)
        setColorMap(tiff);
}

void setFields(TIFF* tiff, PixelSize size, TiffOptions const& options)
{
    auto const layout = layoutOf(options.kind);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, size.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, size.height);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, layout.samples);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, layout.bits);
    TIFFSetField(
        tiff, TIFFTAG_PLANARCONFIG, options.isPlanar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, compressionOf(options));
    setColorFields(tiff, options);
    if (options.orientation != 0)
        TIFFSetField(tiff, TIFFTAG_ORIENTATION, options.orientation);
    if (options.isTiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 32);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
    }
}

// One sample (or all, for -1) of the pixels of a rectangle, padded with the last pixel.
FileBytes blockOf(RgbaPixels const& pixels, TiffOptions const& options, int left, int top,
    int width, int height, int sample)
{
    auto const layout = layoutOf(options.kind);
    FileBytes block;
    for (int y = top; y < top + height; ++y) {
        FileBytes row;
        for (int x = left; x < left + width; ++x) {
            FileBytes pixel;
            appendPixel(options.kind,
                pixels.at(std::min(x, pixels.size.width - 1), std::min(y, pixels.size.height - 1)),
                pixel);
            auto const unit = pixel.size() / static_cast<std::size_t>(layout.samples);
            auto const first = sample < 0 ? 0 : static_cast<std::size_t>(sample) * unit;
            auto const count = sample < 0 ? pixel.size() : unit;
            auto const from = pixel.begin() + static_cast<std::ptrdiff_t>(first);
            row.insert(row.end(), from, from + static_cast<std::ptrdiff_t>(count));
        }
        if (options.kind == Kind::bilevel) {
            FileBytes bits((row.size() + 7) / 8);
            for (std::size_t x = 0; x < row.size(); ++x)
                bits[x / 8] = static_cast<std::uint8_t>(bits[x / 8] | row[x] << (7 - x % 8));
            row = std::move(bits);
        }
        block.insert(block.end(), row.begin(), row.end());
    }
    return block;
}

void writePage(TIFF* tiff, RgbaPixels const& pixels, TiffOptions const& options)
{
    setFields(tiff, pixels.size, options);
    auto const planes = options.isPlanar ? layoutOf(options.kind).samples : 1;
    for (int plane = 0; plane < planes; ++plane) {
        auto const sample = options.isPlanar ? plane : -1;
        for (int top = 0; top < pixels.size.height; top += 16) {
            if (!options.isTiled) {
                auto const height = std::min(16, pixels.size.height - top);
                auto strip = blockOf(pixels, options, 0, top, pixels.size.width, height, sample);
                TIFFWriteEncodedStrip(tiff,
                    TIFFComputeStrip(
                        tiff, static_cast<std::uint32_t>(top), static_cast<std::uint16_t>(plane)),
                    strip.data(), static_cast<tmsize_t>(strip.size()));
                continue;
            }
            for (int left = 0; left < pixels.size.width; left += 32) {
                auto tile = blockOf(pixels, options, left, top, 32, 16, sample);
                TIFFWriteTile(tiff, tile.data(), static_cast<std::uint32_t>(left),
                    static_cast<std::uint32_t>(top), 0, static_cast<std::uint16_t>(plane));
            }
        }
    }
    TIFFWriteDirectory(tiff);
}

} // namespace

FileBytes writeTiff(RgbaPixels const& pixels, TiffOptions const& options)
{
    MemoryFile file;
    auto* tiff = TIFFClientOpen("memory", options.isBigEndian ? "wb" : "wl", &file, readFrom,
        writeTo, seekTo, closeIt, sizeOf, nullptr, nullptr);
    if (tiff == nullptr)
        return {};
    writePage(tiff, pixels, options);
    for (auto const& page : options.pages)
        writePage(tiff, page, options);
    TIFFClose(tiff);
    return file.bytes;
}

} // namespace pixelhain
