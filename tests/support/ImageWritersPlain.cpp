#include "support/ByteWriter.h"
#include "support/PlainWriters.h"
#include <array>
#include <cmath>
#include <cstring>

namespace pixelhain {

namespace {

void writeQoiPixel(ByteWriter& out, std::uint8_t const* now, std::uint8_t const* before)
{
    if (now[3] != before[3]) {
        out.u8(0xFF);
        for (int c = 0; c < 4; ++c)
            out.u8(now[c]);
        return;
    }
    auto const red = static_cast<std::int8_t>(now[0] - before[0]);
    auto const green = static_cast<std::int8_t>(now[1] - before[1]);
    auto const blue = static_cast<std::int8_t>(now[2] - before[2]);
    auto const isSmall
        = [](int value, int least, int most) { return value >= least && value <= most; };
    if (isSmall(red, -2, 1) && isSmall(green, -2, 1) && isSmall(blue, -2, 1)) {
        out.u8(static_cast<unsigned>(0x40 | (red + 2) << 4 | (green + 2) << 2 | (blue + 2)));
    } else if (isSmall(green, -32, 31) && isSmall(red - green, -8, 7)
        && isSmall(blue - green, -8, 7)) {
        out.u8(static_cast<unsigned>(0x80 | (green + 32)));
        out.u8(static_cast<unsigned>((red - green + 8) << 4 | (blue - green + 8)));
    } else {
        out.u8(0xFE);
        for (int c = 0; c < 3; ++c)
            out.u8(now[c]);
    }
}

unsigned pnmSample(std::uint8_t value, int most)
{
    return (value * static_cast<unsigned>(most) + 127) / 255;
}

void writeTgaPixel(ByteWriter& out, std::uint8_t const* rgba, TgaOptions::Kind kind)
{
    switch (kind) {
    case TgaOptions::Kind::color15:
        out.u16(0x8000U | (rgba[0] / 8U) << 10 | (rgba[1] / 8U) << 5 | rgba[2] / 8U);
        break;
    case TgaOptions::Kind::grey:
        out.u8(luma(rgba));
        break;
    case TgaOptions::Kind::palette:
        out.u8(paletteIndex(rgba));
        break;
    default:
        for (auto const c : { 2, 1, 0 })
            out.u8(rgba[c]);
        if (kind == TgaOptions::Kind::color32)
            out.u8(rgba[3]);
        break;
    }
}

unsigned tgaBits(TgaOptions::Kind kind)
{
    switch (kind) {
    case TgaOptions::Kind::color15:
        return 16;
    case TgaOptions::Kind::color24:
        return 24;
    case TgaOptions::Kind::color32:
        return 32;
    default:
        return 8;
    }
}

FileBytes iconBitmap(IcoPicture const& picture)
{
    auto const isMasked = picture.kind == IcoPicture::Kind::masked24;
    auto const& [size, rgba] = picture.pixels;
    ByteWriter out;
    out.u32(40);
    out.u32(static_cast<std::size_t>(size.width));
    out.u32(static_cast<std::size_t>(size.height) * 2);
    out.u16(1);
    out.u16(isMasked ? 24 : 32);
    for (int i = 0; i < 6; ++i)
        out.u32(0);
    for (int y = size.height - 1; y >= 0; --y) {
        for (int x = 0; x < size.width; ++x) {
            auto const* at = picture.pixels.at(x, y);
            for (auto const c : { 2, 1, 0 })
                out.u8(at[c]);
            if (!isMasked)
                out.u8(at[3]);
        }
        while ((out.size() - 40) % 4 != 0)
            out.u8(0);
    }
    auto const begin = out.size();
    for (int y = size.height - 1; y >= 0; --y) {
        for (int x = 0; x < (size.width + 7) / 8 * 8; x += 8) {
            unsigned byte = 0;
            for (int bit = 0; bit < 8 && x + bit < size.width; ++bit)
                byte |= (picture.pixels.at(x + bit, y)[3] < 128 ? 0x80U : 0U) >> bit;
            out.u8(byte);
        }
        while ((out.size() - begin) % 4 != 0)
            out.u8(0);
    }
    return out.bytes;
}

std::array<std::uint8_t, 4> radiancePixel(std::uint8_t const* rgba, double brightness)
{
    double linear[3];
    for (int c = 0; c < 3; ++c)
        linear[c] = linearOf(rgba[c]) * brightness;
    auto const most = std::max({ linear[0], linear[1], linear[2] });
    if (most < 1e-32)
        return {};
    int exponent = 0;
    auto const scale = std::frexp(most, &exponent) * 256 / most;
    std::array<std::uint8_t, 4> pixel {};
    for (std::size_t c = 0; c < 3; ++c)
        pixel[c] = static_cast<std::uint8_t>(linear[c] * scale);
    pixel[3] = static_cast<std::uint8_t>(exponent + 128);
    return pixel;
}

using RadianceLine = std::vector<std::array<std::uint8_t, 4>>;

void writeSeparateRuns(ByteWriter& out, RadianceLine const& line)
{
    out.u16(0x0202);
    out.u8(static_cast<unsigned>(line.size() >> 8));
    out.u8(static_cast<unsigned>(line.size() & 0xFF));
    for (std::size_t c = 0; c < 4; ++c) {
        for (std::size_t x = 0; x < line.size();) {
            std::size_t run = 1;
            while (x + run < line.size() && run < 127 && line[x + run][c] == line[x][c])
                ++run;
            out.u8(run > 2 ? static_cast<unsigned>(128 + run) : 1U);
            out.u8(line[x][c]);
            x += run > 2 ? run : 1;
        }
    }
}

void writeOldRuns(ByteWriter& out, RadianceLine const& line)
{
    for (std::size_t x = 0; x < line.size();) {
        std::size_t run = 1;
        while (x + run < line.size() && run < 255 && line[x + run] == line[x])
            ++run;
        for (auto const byte : line[x])
            out.u8(byte);
        if (run > 1) {
            out.u24(0x010101);
            out.u8(static_cast<unsigned>(run - 1));
        }
        x += run;
    }
}

} // namespace

double linearOf(std::uint8_t srgb)
{
    auto const value = srgb / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

FileBytes writeQoi(RgbaPixels const& pixels, QoiOptions const& options)
{
    ByteWriter out(true);
    out.text("qoif");
    out.u32(static_cast<std::size_t>(pixels.size.width));
    out.u32(static_cast<std::size_t>(pixels.size.height));
    out.u8(options.hasAlpha ? 4 : 3);
    out.u8(options.isLinear ? 1 : 0);
    std::array<std::uint8_t, 4> before { 0, 0, 0, 255 };
    std::array<std::array<std::uint8_t, 4>, 64> seen {};
    unsigned run = 0;
    auto const endRun = [&] {
        if (run > 0)
            out.u8(0xC0 | (run - 1));
        run = 0;
    };
    for (std::size_t at = 0; at < pixels.rgba.size(); at += 4) {
        std::array<std::uint8_t, 4> now {};
        std::memcpy(now.data(), pixels.rgba.data() + at, 4);
        if (!options.hasAlpha)
            now[3] = 255;
        if (now == before) {
            if (++run == 62)
                endRun();
            continue;
        }
        endRun();
        auto const slot
            = static_cast<std::size_t>(now[0] * 3 + now[1] * 5 + now[2] * 7 + now[3] * 11) % 64;
        if (seen[slot] == now)
            out.u8(static_cast<unsigned>(slot));
        else
            writeQoiPixel(out, now.data(), before.data());
        seen[slot] = now;
        before = now;
    }
    endRun();
    for (int i = 0; i < 7; ++i)
        out.u8(0);
    out.u8(1);
    return out.bytes;
}

FileBytes writePnm(RgbaPixels const& pixels, PnmOptions const& options)
{
    ByteWriter out(true);
    auto const [width, height] = pixels.size;
    auto const kind = options.kind;
    auto const isBitmap = kind == '1' || kind == '4';
    auto const isText = kind <= '3';
    auto const sides
        = std::to_string(width) + (kind == '7' ? "\nHEIGHT " : " ") + std::to_string(height);
    auto const most = std::to_string(options.most);
    if (kind == '7')
        out.text(
            "P7\nWIDTH " + sides + "\nDEPTH 4\nMAXVAL " + most + "\nTUPLTYPE RGB_ALPHA\nENDHDR\n");
    else
        out.text("P" + std::string(1, kind) + "\n# a comment\n" + sides
            + (isBitmap ? "\n" : "\n" + most + "\n"));
    auto const sample = [&](unsigned value) {
        if (isText)
            out.text(std::to_string(value) + " ");
        else if (options.most > 255)
            out.u16(value);
        else
            out.u8(value);
    };
    for (int y = 0; y < height; ++y) {
        unsigned bits = 0;
        for (int x = 0; x < width; ++x) {
            auto const* at = pixels.at(x, y);
            auto const grey = static_cast<std::uint8_t>(luma(at));
            if (isBitmap && isText) {
                out.u8(grey < 128 ? '1' : '0');
            } else if (isBitmap) {
                bits |= (grey < 128 ? 0x80U : 0U) >> x % 8;
                if (x % 8 == 7 || x == width - 1) {
                    out.u8(bits);
                    bits = 0;
                }
            } else if (kind == '2' || kind == '5') {
                sample(pnmSample(grey, options.most));
            } else {
                for (int c = 0; c < (kind == '7' ? 4 : 3); ++c)
                    sample(pnmSample(at[c], options.most));
            }
        }
        if (isText)
            out.text("\n");
    }
    return out.bytes;
}

FileBytes writeTga(RgbaPixels const& pixels, TgaOptions const& options)
{
    using Kind = TgaOptions::Kind;
    ByteWriter out;
    auto const isPalette = options.kind == Kind::palette;
    auto const type = isPalette ? 1U : options.kind == Kind::grey ? 3U : 2U;
    auto const width = pixels.size.width;
    auto const height = pixels.size.height;
    out.u8(3); // the length of the name
    out.u8(isPalette ? 1 : 0);
    out.u8(type | (options.hasRuns ? 8U : 0U));
    out.u16(0);
    out.u16(isPalette ? 216 : 0);
    out.u8(isPalette ? 24 : 0);
    out.u32(0);
    out.u16(static_cast<unsigned>(width));
    out.u16(static_cast<unsigned>(height));
    out.u8(tgaBits(options.kind));
    auto const alpha = options.kind == Kind::color32 ? 8U : 0U;
    out.u8(alpha | (options.isTopDown ? 0x20U : 0U) | (options.isRightToLeft ? 0x10U : 0U));
    out.text("tga");
    for (unsigned i = 0; isPalette && i < 216; ++i) {
        for (auto const c : { 2, 1, 0 })
            out.u8(paletteColor(i, c));
    }
    for (int line = 0; line < height; ++line) {
        auto const y = options.isTopDown ? line : height - 1 - line;
        auto const at = [&](int column) {
            return pixels.at(options.isRightToLeft ? width - 1 - column : column, y);
        };
        for (int x = 0; x < width;) {
            int run = 1;
            while (x + run < width && run < 128 && std::memcmp(at(x), at(x + run), 4) == 0)
                ++run;
            if (options.hasRuns)
                out.u8(run > 1 ? 0x80U | static_cast<unsigned>(run - 1) : 0U);
            writeTgaPixel(out, at(x), options.kind);
            x += options.hasRuns ? run : 1;
        }
    }
    return out.bytes;
}

FileBytes writeIco(std::vector<IcoPicture> const& pictures)
{
    ByteWriter out;
    out.u16(0);
    out.u16(1);
    out.u16(static_cast<unsigned>(pictures.size()));
    std::vector<FileBytes> bodies;
    for (auto const& picture : pictures)
        bodies.push_back(
            picture.kind == IcoPicture::Kind::png ? writePng(picture.pixels) : iconBitmap(picture));
    auto offset = 6 + 16 * pictures.size();
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        auto const& [size, rgba] = pictures[i].pixels;
        out.u8(static_cast<unsigned>(size.width) & 0xFF);
        out.u8(static_cast<unsigned>(size.height) & 0xFF);
        out.u16(0);
        out.u16(1);
        out.u16(pictures[i].kind == IcoPicture::Kind::masked24 ? 24 : 32);
        out.u32(bodies[i].size());
        out.u32(offset);
        offset += bodies[i].size();
    }
    for (auto const& body : bodies)
        out.raw(body);
    return out.bytes;
}

FileBytes writeRadiance(RgbaPixels const& pixels, RadianceOptions const& options)
{
    ByteWriter out(true);
    auto const width = pixels.size.width;
    auto const height = pixels.size.height;
    auto const& axes = options.axes;
    auto const isByColumns = axes[1] == 'X';
    auto const lines = isByColumns ? width : height;
    auto const along = isByColumns ? height : width;
    out.text("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n" + axes.substr(0, 2) + " "
        + std::to_string(lines) + " " + axes.substr(3, 2) + " " + std::to_string(along) + "\n");
    // Y falls and X rises from the top left corner on.
    auto const isReversed = [](char letter, char sign) { return (letter == 'X') == (sign == '-'); };
    for (int i = 0; i < lines; ++i) {
        RadianceLine line;
        for (int j = 0; j < along; ++j) {
            auto const first = isReversed(axes[1], axes[0]) ? lines - 1 - i : i;
            auto const second = isReversed(axes[4], axes[3]) ? along - 1 - j : j;
            auto const* at = isByColumns ? pixels.at(first, second) : pixels.at(second, first);
            line.push_back(radiancePixel(at, options.brightness));
        }
        switch (options.packing) {
        case RadianceOptions::Packing::separateRuns:
            writeSeparateRuns(out, line);
            break;
        case RadianceOptions::Packing::oldRuns:
            writeOldRuns(out, line);
            break;
        case RadianceOptions::Packing::plain:
            for (auto const& pixel : line) {
                for (auto const byte : pixel)
                    out.u8(byte);
            }
            break;
        }
    }
    return out.bytes;
}

} // namespace pixelhain
