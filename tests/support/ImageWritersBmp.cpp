#include "support/ByteWriter.h"
#include "support/ImageWriters.h"

namespace pixelhain {

namespace {

using Kind = BmpOptions::Kind;

unsigned bitsOf(Kind kind)
{
    switch (kind) {
    case Kind::mono:
        return 1;
    case Kind::palette4:
    case Kind::rle4:
        return 4;
    case Kind::palette8:
    case Kind::rle8:
    case Kind::os2palette8:
        return 8;
    case Kind::rgb555:
    case Kind::rgb565:
        return 16;
    case Kind::rgb24:
        return 24;
    default:
        return 32;
    }
}

unsigned compressionOf(Kind kind)
{
    switch (kind) {
    case Kind::rle8:
        return 1;
    case Kind::rle4:
        return 2;
    case Kind::rgb565:
    case Kind::rgba32:
        return 3;
    default:
        return 0;
    }
}

// 16 colours: each channel off or on, dark or bright.
unsigned index16(std::uint8_t const* rgba)
{
    auto const bright = std::max({ rgba[0], rgba[1], rgba[2] }) > 170 ? 8U : 0U;
    return bright | (rgba[0] > 85 ? 4U : 0U) | (rgba[1] > 85 ? 2U : 0U) | (rgba[2] > 85 ? 1U : 0U);
}

unsigned indexOf(Kind kind, std::uint8_t const* rgba)
{
    auto const bits = bitsOf(kind);
    return bits == 1 ? (luma(rgba) < 128 ? 0U : 1U)
        : bits == 4  ? index16(rgba)
                     : paletteIndex(rgba);
}

unsigned colorOf(Kind kind, unsigned index, int channel)
{
    auto const bits = bitsOf(kind);
    if (bits == 1)
        return index == 0 ? 0 : 255;
    if (bits == 8)
        return paletteColor(index, channel);
    auto const isOn = (index >> (2 - channel) & 1) != 0;
    return isOn ? (index >= 8 ? 220U : 130U) : 20U;
}

void appendPlainRow(ByteWriter& out, Kind kind, RgbaPixels const& pixels, int y)
{
    unsigned pending = 0;
    unsigned filled = 0;
    auto const bits = bitsOf(kind);
    for (int x = 0; x < pixels.size.width; ++x) {
        auto const* at = pixels.at(x, y);
        if (bits <= 8) {
            pending = pending << bits | indexOf(kind, at);
            filled += bits;
            if (filled == 8) {
                out.u8(pending & 0xFF);
                pending = filled = 0;
            }
        } else if (kind == Kind::rgb555) {
            out.u16(at[0] / 8U << 10 | at[1] / 8U << 5 | at[2] / 8U);
        } else if (kind == Kind::rgb565) {
            out.u16(at[0] / 8U << 11 | at[1] / 4U << 5 | at[2] / 8U);
        } else {
            for (auto const c : { 2, 1, 0 })
                out.u8(at[c]);
            if (bits == 32)
                out.u8(kind == Kind::rgba32 ? at[3] : 0U);
        }
    }
    if (filled != 0)
        out.u8(pending << (8 - filled) & 0xFF);
    out.pad(1);
}

// Runs of one value, then an absolute stretch, so that both forms occur.
void appendRunRow(ByteWriter& out, Kind kind, RgbaPixels const& pixels, int y)
{
    auto const width = pixels.size.width;
    int x = 0;
    auto const value = [&](int column) { return indexOf(kind, pixels.at(column, y)); };
    while (x < width) {
        auto const left = width - x;
        if (x % 16 == 0 && left >= 8) {
            out.u8(0);
            out.u8(8);
            for (int i = 0; i < 8; i += kind == Kind::rle4 ? 2 : 1)
                out.u8(kind == Kind::rle4 ? value(x + i) << 4 | value(x + i + 1) : value(x + i));
            x += 8;
            continue;
        }
        int run = 1;
        while (run < left && run < 255 && value(x + run) == value(x) && (x + run) % 16 != 0)
            ++run;
        out.u8(static_cast<unsigned>(run));
        out.u8(kind == Kind::rle4 ? value(x) << 4 | value(x) : value(x));
        x += run;
    }
    out.u8(0);
    out.u8(0);
}

void appendHeader(ByteWriter& out, RgbaPixels const& pixels, BmpOptions const& options)
{
    auto const width = static_cast<std::size_t>(pixels.size.width);
    auto const height = static_cast<std::size_t>(pixels.size.height);
    auto const bits = bitsOf(options.kind);
    if (options.kind == Kind::os2palette8) {
        out.u32(12);
        out.u16(static_cast<unsigned>(width));
        out.u16(static_cast<unsigned>(height));
        out.u16(1);
        out.u16(bits);
        return;
    }
    auto const isVersion5 = options.kind == Kind::rgba32;
    auto const start = out.size();
    out.u32(isVersion5 ? 124 : 40);
    out.u32(width);
    out.u32(options.isTopDown ? ~height + 1 : height);
    out.u16(1);
    out.u16(bits);
    out.u32(compressionOf(options.kind));
    for (int i = 0; i < 5; ++i)
        out.u32(0);
    if (options.kind == Kind::rgb565 || isVersion5) {
        auto const isDeep = isVersion5;
        out.u32(isDeep ? 0xFF0000 : 0xF800);
        out.u32(isDeep ? 0xFF00 : 0x07E0);
        out.u32(isDeep ? 0xFF : 0x001F);
    }
    if (isVersion5) {
        out.u32(0xFF000000);
        out.text("BGRs");
        out.bytes.resize(start + 124);
    }
}

} // namespace

FileBytes writeBmp(RgbaPixels const& pixels, BmpOptions const& options)
{
    ByteWriter out;
    out.text("BM");
    out.u32(0);
    out.u32(0);
    out.u32(0);
    appendHeader(out, pixels, options);
    auto const bits = bitsOf(options.kind);
    if (bits <= 8) {
        for (unsigned i = 0; i < 1U << bits; ++i) {
            for (auto const c : { 2, 1, 0 })
                out.u8(colorOf(options.kind, i, c));
            if (options.kind != Kind::os2palette8)
                out.u8(0);
        }
    }
    out.put32(10, out.size());
    auto const isRun = options.kind == Kind::rle4 || options.kind == Kind::rle8;
    for (int i = 0; i < pixels.size.height; ++i) {
        auto const y = options.isTopDown ? i : pixels.size.height - 1 - i;
        auto const start = out.size();
        if (isRun)
            appendRunRow(out, options.kind, pixels, y);
        else
            appendPlainRow(out, options.kind, pixels, y);
        while (!isRun && (out.size() - start) % 4 != 0)
            out.u8(0);
    }
    if (isRun) {
        out.u8(0);
        out.u8(1);
    }
    out.put32(2, out.size());
    return out.bytes;
}

} // namespace pixelhain
