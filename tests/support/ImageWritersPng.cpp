#include "support/ByteWriter.h"
#include "support/ImageWriters.h"
#include <array>
#include <cstring>

#include <png.h>

namespace pixelhain {

namespace {

using Kind = PngOptions::Kind;

struct Layout {
    int depth;
    int colorType;
};

Layout layoutOf(Kind kind)
{
    switch (kind) {
    case Kind::rgb8:
    case Kind::rgbKey:
        return { 8, PNG_COLOR_TYPE_RGB };
    case Kind::rgba8:
        return { 8, PNG_COLOR_TYPE_RGB_ALPHA };
    case Kind::rgb16:
        return { 16, PNG_COLOR_TYPE_RGB };
    case Kind::rgba16:
        return { 16, PNG_COLOR_TYPE_RGB_ALPHA };
    case Kind::grey1:
        return { 1, PNG_COLOR_TYPE_GRAY };
    case Kind::grey8:
        return { 8, PNG_COLOR_TYPE_GRAY };
    case Kind::grey16:
        return { 16, PNG_COLOR_TYPE_GRAY };
    case Kind::greyAlpha8:
        return { 8, PNG_COLOR_TYPE_GRAY_ALPHA };
    default:
        return { 8, PNG_COLOR_TYPE_PALETTE };
    }
}

void appendPixel(Kind kind, std::uint8_t const* rgba, FileBytes& row)
{
    auto const add = [&](std::initializer_list<unsigned> values, bool isDeep) {
        for (auto const value : values) {
            row.push_back(static_cast<std::uint8_t>(value));
            if (isDeep)
                row.push_back(static_cast<std::uint8_t>(value));
        }
    };
    switch (kind) {
    case Kind::rgb8:
    case Kind::rgbKey:
        add({ rgba[0], rgba[1], rgba[2] }, false);
        break;
    case Kind::rgba8:
        add({ rgba[0], rgba[1], rgba[2], rgba[3] }, false);
        break;
    case Kind::rgb16:
        add({ rgba[0], rgba[1], rgba[2] }, true);
        break;
    case Kind::rgba16:
        add({ rgba[0], rgba[1], rgba[2], rgba[3] }, true);
        break;
    case Kind::grey8:
        add({ luma(rgba) }, false);
        break;
    case Kind::grey16:
        add({ luma(rgba) }, true);
        break;
    case Kind::greyAlpha8:
        add({ luma(rgba), rgba[3] }, false);
        break;
    case Kind::grey1:
        add({ luma(rgba) < 128 ? 0U : 1U }, false);
        break;
    case Kind::palette:
        add({ paletteIndex(rgba) }, false);
        break;
    case Kind::paletteAlpha:
        add({ rgba[3] < 128 ? 216U : paletteIndex(rgba) }, false);
        break;
    }
}

FileBytes packedRow(Kind kind, RgbaPixels const& pixels, int y)
{
    FileBytes row;
    for (int x = 0; x < pixels.size.width; ++x)
        appendPixel(kind, pixels.at(x, y), row);
    if (kind != Kind::grey1)
        return row;
    FileBytes bits((row.size() + 7) / 8);
    for (std::size_t x = 0; x < row.size(); ++x)
        bits[x / 8] = static_cast<std::uint8_t>(bits[x / 8] | row[x] << (7 - x % 8));
    return bits;
}

void setColors(png_structp png, png_infop info, PngOptions const& options)
{
    if (options.kind == Kind::palette || options.kind == Kind::paletteAlpha) {
        std::array<png_color, 217> colors {};
        for (unsigned i = 0; i < colors.size(); ++i)
            colors[i] = { static_cast<png_byte>(paletteColor(i, 0)),
                static_cast<png_byte>(paletteColor(i, 1)),
                static_cast<png_byte>(paletteColor(i, 2)) };
        png_set_PLTE(png, info, colors.data(), colors.size());
    }
    if (options.kind == Kind::paletteAlpha) {
        std::array<png_byte, 217> alpha {};
        alpha.fill(255);
        alpha.back() = 0;
        png_set_tRNS(png, info, alpha.data(), alpha.size(), nullptr);
    }
    if (options.kind == Kind::rgbKey) {
        png_color_16 const black {};
        png_set_tRNS(png, info, nullptr, 0, &black);
    }
    if (options.gamma > 0)
        png_set_gAMA(png, info, options.gamma);
    if (!options.profile.empty())
        png_set_iCCP(png, info, "profile", 0, options.profile.data(),
            static_cast<png_uint_32>(options.profile.size()));
    if (!options.exif.empty()) {
        auto exif = options.exif;
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), exif.data());
    }
}

FileBytes writeStill(RgbaPixels const& pixels, PngOptions const& options)
{
    FileBytes file;
    auto* png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    auto* info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep data, std::size_t length) {
            auto& out = *static_cast<FileBytes*>(png_get_io_ptr(writer));
            out.insert(out.end(), data, data + length);
        },
        nullptr);
    png_set_benign_errors(png, 1);
    auto const layout = layoutOf(options.kind);
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.size.width),
        static_cast<png_uint_32>(pixels.size.height), layout.depth, layout.colorType,
        options.isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
        PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    setColors(png, info, options);
    std::vector<FileBytes> rows;
    for (int y = 0; y < pixels.size.height; ++y)
        rows.push_back(packedRow(options.kind, pixels, y));
    std::vector<png_bytep> pointers;
    for (auto& row : rows)
        pointers.push_back(row.data());
    png_write_info(png, info);
    png_write_image(png, pointers.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::uint32_t checksum(FileBytes const& bytes, std::size_t from)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (auto i = from; i < bytes.size(); ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

void appendChunk(ByteWriter& out, std::string_view type, FileBytes const& data)
{
    out.u32(data.size());
    auto const from = out.size();
    out.text(type);
    out.raw(data);
    out.u32(checksum(out.bytes, from));
}

FileBytes frameControl(unsigned sequence, PixelSize size)
{
    ByteWriter out(true);
    out.u32(sequence);
    out.u32(static_cast<std::size_t>(size.width));
    out.u32(static_cast<std::size_t>(size.height));
    out.u32(0);
    out.u32(0);
    out.u16(1);
    out.u16(10);
    out.u16(0);
    return out.bytes;
}

struct Chunk {
    std::string type;
    FileBytes data;
};

std::vector<Chunk> chunksOf(FileBytes const& file)
{
    std::vector<Chunk> chunks;
    for (std::size_t at = 8; at + 12 <= file.size();) {
        auto const length = std::size_t { file[at] } << 24 | std::size_t { file[at + 1] } << 16
            | std::size_t { file[at + 2] } << 8 | file[at + 3];
        auto const data = file.begin() + static_cast<std::ptrdiff_t>(at) + 8;
        chunks.push_back({ std::string(data - 4, data),
            FileBytes(data, data + static_cast<std::ptrdiff_t>(length)) });
        at += length + 12;
    }
    return chunks;
}

FileBytes withFrames(FileBytes const& still, RgbaPixels const& pixels, PngOptions options)
{
    auto const frames = std::move(options.frames);
    ByteWriter out(true);
    out.bytes.assign(still.begin(), still.begin() + 8);
    unsigned sequence = 0;
    bool isControlled = false;
    for (auto const& chunk : chunksOf(still)) {
        if (chunk.type == "IDAT" && !isControlled) {
            appendChunk(out, "fcTL", frameControl(sequence++, pixels.size));
            isControlled = true;
        }
        if (chunk.type == "IEND")
            break;
        appendChunk(out, chunk.type, chunk.data);
        if (chunk.type == "IHDR") {
            ByteWriter count(true);
            count.u32(frames.size() + 1);
            count.u32(0);
            appendChunk(out, "acTL", count.bytes);
        }
    }
    for (auto const& frame : frames) {
        appendChunk(out, "fcTL", frameControl(sequence++, frame.size));
        for (auto const& chunk : chunksOf(writeStill(frame, options))) {
            if (chunk.type != "IDAT")
                continue;
            ByteWriter data(true);
            data.u32(sequence++);
            data.raw(chunk.data);
            appendChunk(out, "fdAT", data.bytes);
        }
    }
    appendChunk(out, "IEND", {});
    return out.bytes;
}

} // namespace

FileBytes writePng(RgbaPixels const& pixels, PngOptions const& options)
{
    auto const still = writeStill(pixels, options);
    return options.frames.empty() ? still : withFrames(still, pixels, options);
}

} // namespace pixelhain
