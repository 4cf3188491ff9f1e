#pragma once
#include "codecs/ColorConversion.h"
#include <array>
#include <cstdint>
#include <vector>

namespace pixelhain {

/// How the numbers of a picture stand for light, where no profile says so but a few code points.
struct CodedColors {
    enum class Curve : std::uint8_t { srgb, gamma, linear, pq, hlg };

    Chromaticities primaries { { 0.3127, 0.3290 }, { 0.64, 0.33 }, { 0.30, 0.60 }, { 0.15, 0.06 } };
    Curve curve = Curve::srgb;
    double gamma = 1; ///< light = number ^ gamma, where the curve is one
    double peak = 1000; ///< the brightest that occurs, in cd/m²; of PQ and HLG only

    /// Whether the primaries span any colours at all.
    [[nodiscard]] bool isPlausible() const;
    /// Whether nothing is to be done for sRGB.
    [[nodiscard]] bool isSrgb() const;
    /// Whether it can show more than the white of a page.
    [[nodiscard]] bool isHighRange() const { return curve == Curve::pq || curve == Curve::hlg; }
};

/// The colours of the code points that video formats share (ITU-T H.273). What they leave open or
/// nobody uses is taken for sRGB.
[[nodiscard]] CodedColors codedColors(int primaries, int transfer);

/// Converts rows of R, G, B, A with 16 bits each, in the machine's byte order, to sRGB as B, G, R,
/// A with 8 bits; alpha is kept and may stand for itself only. Of a high range the white of a page
/// (203 cd/m²) becomes a light grey, and what is brighter finds room above it.
class CodedRowConverter {
public:
    explicit CodedRowConverter(CodedColors const& colors);
    void convert(std::uint16_t const* in, std::uint8_t* out, int pixels) const;

private:
    void compress(float (&light)[3]) const;

    CodedColors colors_;
    std::array<float, 9> matrix_ {}; ///< to the primaries of sRGB
    std::array<float, 3> luminance_ {}; ///< how much R, G and B of the picture give
    int numberShift_; ///< bits of a number that `light_` does without
    std::vector<float> light_; ///< by number; 1 is the white of a page
    std::vector<float> scale_; ///< by brightness, of a high range only
    float scaleSteps_ = 0; ///< entries of `scale_` for brightness 1
};

} // namespace pixelhain
