#include "codecs/ToneMapping.h"
#include <algorithm>
#include <cmath>
#include <memory>

namespace pixelhain {

namespace {

constexpr float middleGrey = 0.18F;
// An ordinary picture's mean brightness; night and snow lie within.
constexpr double darkestMean = 0.015;
constexpr double brightestMean = 0.7;
constexpr double leastBrightness = 1e-6; // black has no logarithm

constexpr float shoulder = 0.8F; // linear value above which brightness is pressed together
constexpr float brightest = 1e9F; // beyond that a number is no light

constexpr std::size_t steps = 4096;

// sRGB's curve (IEC 61966-2-1) over the square root of the linear value, which gives dark values
// the steps that the curve needs.
std::array<std::uint8_t, steps + 1> makeCurve()
{
    std::array<std::uint8_t, steps + 1> curve {};
    for (std::size_t i = 0; i <= steps; ++i) {
        auto const root = static_cast<double>(i) / steps;
        auto const linear = root * root;
        auto const encoded
            = linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
        curve[i] = static_cast<std::uint8_t>(std::lround(encoded * 255));
    }
    return curve;
}

std::uint8_t encoded(float linear)
{
    static auto const curve = makeCurve();
    auto const root = std::sqrt(std::clamp(linear, 0.0F, 1.0F));
    return curve[static_cast<std::size_t>(root * steps + 0.5F)];
}

float light(float value)
{
    return value > 0 ? std::min(value, brightest) : 0.0F; // false for what is no number, too
}

} // namespace

void ExposureMeter::add(float red, float green, float blue)
{
    auto const luminance = 0.2126 * light(red) + 0.7152 * light(green) + 0.0722 * light(blue);
    logarithms_ += std::log(std::max(luminance, leastBrightness));
    ++pixels_;
}

float ExposureMeter::exposure() const
{
    if (pixels_ == 0)
        return 1;
    auto const mean = std::exp(logarithms_ / static_cast<double>(pixels_));
    if (mean <= leastBrightness * 1.001 || (mean >= darkestMean && mean <= brightestMean))
        return 1;
    return static_cast<float>(middleGrey / mean);
}

void ToneMap::put(float red, float green, float blue, std::uint8_t* out) const
{
    auto const r = light(red * exposure_);
    auto const g = light(green * exposure_);
    auto const b = light(blue * exposure_);
    auto const most = std::max({ r, g, b });
    auto factor = 1.0F;
    if (most > shoulder) {
        constexpr auto rest = 1 - shoulder;
        auto const pressed = shoulder + rest * (1 - std::exp((shoulder - most) / rest));
        factor = pressed / most;
    }
    out[0] = encoded(b * factor);
    out[1] = encoded(g * factor);
    out[2] = encoded(r * factor);
}

} // namespace pixelhain
