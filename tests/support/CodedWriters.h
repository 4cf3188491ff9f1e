#pragma once
#include "support/ImageWriters.h"

namespace pixelhain {

struct HeifOptions {
    enum class Coding : std::uint8_t { av1, hevc };
    Coding coding = Coding::av1;
    int bits = 8; ///< 8, 10 or 12
    bool hasAlpha = false;
    bool isPremultiplied = false; ///< the pixels are taken as they are
    bool isGrey = false; ///< one channel, from red
    bool isLossless = false;
    bool hasFullColor = true; ///< 4:4:4 instead of 4:2:0
    int primaries = 1; ///< code points
    int transfer = 13;
    int matrix = 6;
    bool isFullRange = true;
    FileBytes profile;
    int thumbnail = 0; ///< longest side; 0: none
    FileBytes exif; ///< from `exifBlock`
    std::string packet; ///< XMP
    int orientation = 1; ///< as EXIF counts, carried out by the file's own turns
    std::vector<RgbaPixels> others; ///< further pictures; the first stays the primary one
};
FileBytes writeHeif(RgbaPixels const& pixels, HeifOptions const& options = {});

struct JxlOptions {
    enum class Sample : std::uint8_t { u8, u16, f32 };
    Sample sample = Sample::u8;
    bool hasAlpha = false;
    bool isPremultiplied = false; ///< the pixels are taken as they are; of 8 bits, lossless
    RgbaPixels preview; ///< of at most 64 × 64; of 8 bits, lossless
    bool isGrey = false; ///< one channel, from red
    float distance = 0; ///< 0: lossless, in the original colours
    int primaries = 1; ///< code points: 1, 9 or 11
    int transfer = 13; ///< code points: 8, 13, 16 or 18
    float intensity = 0; ///< cd/m² of the brightest; 0: the library's choice
    FileBytes profile;
    int orientation = 1;
    FileBytes exif; ///< from `exifBlock`
    bool isPacked = false; ///< the EXIF block is compressed
    FileBytes jpeg; ///< transcoded instead of the pixels
    std::vector<RgbaPixels> frames; ///< further frames: an animation
};
FileBytes writeJxl(RgbaPixels const& pixels, JxlOptions const& options = {});

} // namespace pixelhain
