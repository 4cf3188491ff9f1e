#pragma once
#include "Scenes.h"
#include <cstdint>
#include <string>
#include <vector>

namespace pixelhain {

/// How a sample is stored.
enum class SampleFormat {
    jpeg,
    jpegWithPreviews, ///< an EXIF thumbnail and a larger preview, as cameras leave them
    jpegProgressive,
    jpegGrey,
    png,
    pngSixteenBit,
    pngTransparent,
    gif,
    gifAnimated,
    webp,
    webpAnimated,
    tiff,
    tiffSixteenBit,
    bmp,
};

/// One picture of the sample folder.
struct Sample {
    std::string path; ///< below the sample folder, UTF-8
    Scene scene = Scene::sea;
    PixelSize size; ///< upright
    std::uint32_t seed = 0;
    SampleFormat format = SampleFormat::jpeg;
    int orientation = 0; ///< as EXIF has it; 0: not stored
    std::string taken; ///< "2026:07:14 20:41:07"; empty: not stored
};

/// All samples, in the order in which they are drawn. Most lie in the sample folder itself: a
/// gallery shows no subfolders unless it is asked to.
std::vector<Sample> const& sampleCatalogue();

} // namespace pixelhain
