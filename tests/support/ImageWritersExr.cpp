#include "support/PlainWriters.h"
#include <ImfChromaticitiesAttribute.h>
#include <ImfHeader.h>
#include <ImfRgbaFile.h>
#include <ImfStandardAttributes.h>
#include <ImfStdIO.h>
#include <ImfTiledRgbaFile.h>

namespace pixelhain {

namespace {

Imf::Chromaticities const rec2020(
    { 0.708F, 0.292F }, { 0.170F, 0.797F }, { 0.131F, 0.046F }, { 0.3127F, 0.3290F });

std::vector<Imf::Rgba> halfPixels(RgbaPixels const& pixels, ExrOptions const& options)
{
    std::vector<Imf::Rgba> row;
    auto const toFile = Imf::RGBtoXYZ(Imf::Chromaticities(), 1) * Imf::XYZtoRGB(rec2020, 1);
    for (std::size_t at = 0; at < pixels.rgba.size(); at += 4) {
        auto const alpha = options.hasAlpha ? pixels.rgba[at + 3] / 255.0 : 1.0;
        Imath::V3f color;
        for (int c = 0; c < 3; ++c)
            color[c] = static_cast<float>(
                linearOf(pixels.rgba[at + static_cast<std::size_t>(c)]) * options.brightness);
        if (options.hasWidePrimaries)
            color = color * toFile;
        color *= static_cast<float>(alpha);
        row.emplace_back(half(color.x), half(color.y), half(color.z), half(float(alpha)));
    }
    return row;
}

Imf::RgbaChannels channelsOf(ExrOptions const& options)
{
    if (options.isLuminanceChroma)
        return options.hasAlpha ? Imf::WRITE_YCA : Imf::WRITE_YC;
    return options.hasAlpha ? Imf::WRITE_RGBA : Imf::WRITE_RGB;
}

} // namespace

FileBytes writeExr(RgbaPixels const& pixels, ExrOptions const& options)
{
    auto const [width, height] = pixels.size;
    auto const border = options.border;
    Imath::Box2i const data({ 0, 0 }, { width - 1, height - 1 });
    Imath::Box2i const display({ -border, -border }, { width - 1 + border, height - 1 + border });
    Imf::Header header(display, data);
    if (options.hasWidePrimaries)
        Imf::addChromaticities(header, rec2020);
    auto const half = halfPixels(pixels, options);
    Imf::StdOSStream stream;
    if (options.isTiled) {
        Imf::TiledRgbaOutputFile file(
            stream, header, channelsOf(options), 16, 16, Imf::ONE_LEVEL, Imf::ROUND_DOWN, 0);
        file.setFrameBuffer(half.data(), 1, static_cast<std::size_t>(width));
        file.writeTiles(0, file.numXTiles() - 1, 0, file.numYTiles() - 1);
    } else {
        Imf::RgbaOutputFile file(stream, header, channelsOf(options), 0);
        file.setFrameBuffer(half.data(), 1, static_cast<std::size_t>(width));
        file.writePixels(height);
    }
    auto const text = stream.str();
    return { text.begin(), text.end() };
}

} // namespace pixelhain
