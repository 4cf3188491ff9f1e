#pragma once
#include "support/ImageWriters.h"

namespace pixelhain {

/// Small writers of the formats that few programs write.

/// The linear light, 0 to 1, of an sRGB value.
double linearOf(std::uint8_t srgb);

struct QoiOptions {
    bool hasAlpha = true;
    bool isLinear = false;
};
FileBytes writeQoi(RgbaPixels const& pixels, QoiOptions const& options = {});

struct PnmOptions {
    char kind = '6'; ///< '1' to '6'; '7' with colour and alpha
    int most = 255;
};
FileBytes writePnm(RgbaPixels const& pixels, PnmOptions const& options = {});

struct TgaOptions {
    enum class Kind : std::uint8_t { color15, color24, color32, grey, palette };
    Kind kind = Kind::color24;
    bool hasRuns = false;
    bool isTopDown = true;
    bool isRightToLeft = false;
};
FileBytes writeTga(RgbaPixels const& pixels, TgaOptions const& options = {});

/// An icon with each of these pictures, as a bitmap of 24 bits with a mask, of 32 bits, or as PNG.
struct IcoPicture {
    enum class Kind : std::uint8_t { masked24, color32, png };
    RgbaPixels pixels;
    Kind kind = Kind::color32;
};
FileBytes writeIco(std::vector<IcoPicture> const& pictures);

struct RadianceOptions {
    enum class Packing : std::uint8_t { plain, oldRuns, separateRuns };
    Packing packing = Packing::separateRuns;
    std::string axes = "-Y +X"; ///< the signs and letters of the resolution line
    double brightness = 1; ///< of white
};
/// The colours are taken as sRGB and written as linear light.
FileBytes writeRadiance(RgbaPixels const& pixels, RadianceOptions const& options = {});

struct ExrOptions {
    bool hasAlpha = false;
    bool isTiled = false;
    bool isLuminanceChroma = false;
    bool hasWidePrimaries = false; ///< those of Rec. 2020
    int border = 0; ///< pixels of the display window around the picture
    double brightness = 1;
};
FileBytes writeExr(RgbaPixels const& pixels, ExrOptions const& options = {});

struct Jp2Options {
    enum class Color : std::uint8_t { rgb, rgba, grey, ycc };
    Color color = Color::rgb;
    bool isCodestream = false; ///< no boxes around it
    int bits = 8;
    int subsampling = 1; ///< of the colour channels with `ycc`
    FileBytes profile;
};
FileBytes writeJp2(RgbaPixels const& pixels, Jp2Options const& options = {});

} // namespace pixelhain
