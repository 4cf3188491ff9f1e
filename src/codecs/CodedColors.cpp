#include "codecs/CodedColors.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

using Matrix = std::array<double, 9>;
using Vector = std::array<double, 3>;

constexpr double pageWhite = 203; // cd/m²
constexpr std::size_t scaleEntries = 4096;

constexpr double d65[2] = { 0.3127, 0.3290 };

Chromaticities chromaticities(int code)
{
    switch (code) {
    case 4:
        return { { 0.310, 0.316 }, { 0.67, 0.33 }, { 0.21, 0.71 }, { 0.14, 0.08 } };
    case 5:
        return { { d65[0], d65[1] }, { 0.64, 0.33 }, { 0.29, 0.60 }, { 0.15, 0.06 } };
    case 6:
    case 7:
        return { { d65[0], d65[1] }, { 0.630, 0.340 }, { 0.310, 0.595 }, { 0.155, 0.070 } };
    case 9:
        return { { d65[0], d65[1] }, { 0.708, 0.292 }, { 0.170, 0.797 }, { 0.131, 0.046 } };
    case 11:
        return { { 0.314, 0.351 }, { 0.680, 0.320 }, { 0.265, 0.690 }, { 0.150, 0.060 } };
    case 12:
        return { { d65[0], d65[1] }, { 0.680, 0.320 }, { 0.265, 0.690 }, { 0.150, 0.060 } };
    case 22:
        return { { d65[0], d65[1] }, { 0.630, 0.340 }, { 0.295, 0.605 }, { 0.155, 0.077 } };
    default:
        return CodedColors {}.primaries;
    }
}

Matrix inverse(Matrix const& m)
{
    auto const minor = [&](std::size_t a, std::size_t b, std::size_t c, std::size_t d) {
        return m[a] * m[d] - m[b] * m[c];
    };
    Matrix adjugate { minor(4, 5, 7, 8), -minor(1, 2, 7, 8), minor(1, 2, 4, 5), -minor(3, 5, 6, 8),
        minor(0, 2, 6, 8), -minor(0, 2, 3, 5), minor(3, 4, 6, 7), -minor(0, 1, 6, 7),
        minor(0, 1, 3, 4) };
    auto const determinant = m[0] * adjugate[0] + m[1] * adjugate[3] + m[2] * adjugate[6];
    for (auto& value : adjugate)
        value /= determinant;
    return adjugate;
}

Matrix product(Matrix const& a, Matrix const& b)
{
    Matrix result {};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            for (std::size_t i = 0; i < 3; ++i)
                result[row * 3 + column] += a[row * 3 + i] * b[i * 3 + column];
        }
    }
    return result;
}

Vector product(Matrix const& a, Vector const& v)
{
    Vector result {};
    for (std::size_t row = 0; row < 3; ++row)
        result[row] = a[row * 3] * v[0] + a[row * 3 + 1] * v[1] + a[row * 3 + 2] * v[2];
    return result;
}

Vector whiteXyz(double const (&xy)[2])
{
    return { xy[0] / xy[1], 1, (1 - xy[0] - xy[1]) / xy[1] };
}

// Linear R, G, B to X, Y, Z.
Matrix toXyz(Chromaticities const& colors)
{
    auto const column = [](double const(&xy)[2]) {
        return Vector { xy[0], xy[1], 1 - xy[0] - xy[1] };
    };
    auto const red = column(colors.red);
    auto const green = column(colors.green);
    auto const blue = column(colors.blue);
    Matrix const primaries { red[0], green[0], blue[0], red[1], green[1], blue[1], red[2], green[2],
        blue[2] };
    auto const amounts = product(inverse(primaries), whiteXyz(colors.white));
    auto scaled = primaries;
    for (std::size_t i = 0; i < scaled.size(); ++i)
        scaled[i] *= amounts[i % 3];
    return scaled;
}

// Bradford's way from one white to that of sRGB.
Matrix adaptation(double const (&white)[2])
{
    constexpr Matrix cones { 0.8951, 0.2664, -0.1614, -0.7502, 1.7135, 0.0367, 0.0389, -0.0685,
        1.0296 };
    auto const from = product(cones, whiteXyz(white));
    auto const to = product(cones, whiteXyz(d65));
    Matrix const gains { to[0] / from[0], 0, 0, 0, to[1] / from[1], 0, 0, 0, to[2] / from[2] };
    return product(inverse(cones), product(gains, cones));
}

double pqLight(double number)
{
    constexpr double m1 = 2610.0 / 16384, m2 = 2523.0 / 4096 * 128;
    constexpr double c1 = 3424.0 / 4096, c2 = 2413.0 / 4096 * 32, c3 = 2392.0 / 4096 * 32;
    auto const power = std::pow(number, 1 / m2);
    return 10'000 / pageWhite * std::pow(std::max(power - c1, 0.0) / (c2 - c3 * power), 1 / m1);
}

// Light of the scene; what a screen makes of it depends on how bright the pixel is as a whole.
double hlgLight(double number)
{
    constexpr double a = 0.17883277, b = 0.28466892, c = 0.55991073;
    return number <= 0.5 ? number * number / 3 : (std::exp((number - c) / a) + b) / 12;
}

double light(CodedColors const& colors, double number)
{
    switch (colors.curve) {
    case CodedColors::Curve::gamma:
        return std::pow(number, colors.gamma);
    case CodedColors::Curve::linear:
        return number;
    case CodedColors::Curve::pq:
        return pqLight(number);
    case CodedColors::Curve::hlg:
        return hlgLight(number);
    default:
        return number <= 0.04045 ? number / 12.92 : std::pow((number + 0.055) / 1.055, 2.4);
    }
}

// sRGB by light, fine enough for the steepest part of the curve.
std::vector<std::uint8_t> const& encoded()
{
    static auto const table = [] {
        std::vector<std::uint8_t> made(65536);
        for (std::size_t i = 0; i < made.size(); ++i) {
            auto const x = double(i) / 65535;
            auto const number = x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
            made[i] = static_cast<std::uint8_t>(std::lround(number * 255));
        }
        return made;
    }();
    return table;
}

// What is left of `brightness`: all of it up to half, then ever less, so that `peak` becomes 1.
double compressed(double brightness, double peak)
{
    constexpr double knee = 0.5;
    if (brightness <= knee)
        return brightness;
    auto const over = (std::min(brightness, peak) - knee) / (1 - knee);
    auto const most = (peak - knee) / (1 - knee);
    return knee + (1 - knee) * over * (1 + over / (most * most)) / (1 + over);
}

} // namespace

bool CodedColors::isSrgb() const
{
    constexpr double tolerance = 0.002;
    auto const isNear = [](double const(&a)[2], double const(&b)[2]) {
        return std::abs(a[0] - b[0]) < tolerance && std::abs(a[1] - b[1]) < tolerance;
    };
    CodedColors const srgb;
    return curve == Curve::srgb && isNear(primaries.white, srgb.primaries.white)
        && isNear(primaries.red, srgb.primaries.red)
        && isNear(primaries.green, srgb.primaries.green)
        && isNear(primaries.blue, srgb.primaries.blue);
}

bool CodedColors::isPlausible() const
{
    auto const isInside
        = [](double const(&xy)[2]) { return xy[0] > -1 && xy[0] < 2 && xy[1] > 0.01 && xy[1] < 2; };
    auto const& [white, red, green, blue] = primaries;
    // The blue of wide spaces lies on the axis or below it.
    auto const area
        = (green[0] - red[0]) * (blue[1] - red[1]) - (blue[0] - red[0]) * (green[1] - red[1]);
    return isInside(white) && std::isfinite(area) && std::abs(area) > 0.01;
}

CodedColors codedColors(int primaries, int transfer)
{
    CodedColors colors;
    colors.primaries = chromaticities(primaries);
    auto const setGamma = [&](double gamma) {
        colors.curve = CodedColors::Curve::gamma;
        colors.gamma = gamma;
    };
    switch (transfer) {
    case 4:
        setGamma(2.2);
        break;
    case 5:
        setGamma(2.8);
        break;
    case 8:
        colors.curve = CodedColors::Curve::linear;
        break;
    case 16:
        colors.curve = CodedColors::Curve::pq;
        break;
    case 17:
        setGamma(2.6);
        break;
    case 18:
        colors.curve = CodedColors::Curve::hlg;
        break;
    default: // The curves of television differ from that of sRGB in the room they are meant for.
        break;
    }
    return colors;
}

CodedRowConverter::CodedRowConverter(CodedColors const& colors)
    : colors_(colors)
    // Dark parts lie close together where numbers are proportional to light, and only there.
    , numberShift_(colors.curve == CodedColors::Curve::linear ? 0 : 4)
    , light_(std::size_t { 65536 } >> numberShift_)
{
    auto const own = toXyz(colors.primaries);
    auto const matrix = product(
        inverse(toXyz(CodedColors {}.primaries)), product(adaptation(colors.primaries.white), own));
    for (std::size_t i = 0; i < matrix_.size(); ++i)
        matrix_[i] = static_cast<float>(matrix[i]);
    for (std::size_t i = 0; i < luminance_.size(); ++i)
        luminance_[i] = static_cast<float>(own[3 + i]);
    for (std::size_t i = 0; i < light_.size(); ++i)
        light_[i] = static_cast<float>(light(colors, double(i) / double(light_.size() - 1)));
    if (!colors.isHighRange())
        return;
    auto const peak = std::clamp(colors.peak, 250.0, 10'000.0) / pageWhite;
    scale_.resize(scaleEntries, 1);
    scaleSteps_ = static_cast<float>((scaleEntries - 1) / peak);
    for (std::size_t i = 1; i < scaleEntries; ++i) {
        auto const brightness = double(i) / scaleSteps_;
        scale_[i] = static_cast<float>(compressed(brightness, peak) / brightness);
    }
}

void CodedRowConverter::compress(float (&rgb)[3]) const
{
    auto const brightest = std::max({ rgb[0], rgb[1], rgb[2], 0.0F });
    auto const step = std::min(brightest * scaleSteps_, static_cast<float>(scaleEntries - 1));
    auto const scale = scale_[static_cast<std::size_t>(step)];
    for (auto& value : rgb)
        value *= scale;
}

void CodedRowConverter::convert(std::uint16_t const* in, std::uint8_t* out, int pixels) const
{
    auto const isHlg = colors_.curve == CodedColors::Curve::hlg;
    auto const screen = static_cast<float>(colors_.peak / pageWhite);
    auto const* codes = encoded().data();
    for (int x = 0; x < pixels; ++x, in += 4, out += 4) {
        float own[3];
        for (int c = 0; c < 3; ++c)
            own[c] = light_[static_cast<std::size_t>(in[c] >> numberShift_)];
        if (isHlg) {
            auto const scene
                = luminance_[0] * own[0] + luminance_[1] * own[1] + luminance_[2] * own[2];
            auto const gain = screen * std::pow(scene, 0.2F);
            for (auto& value : own)
                value *= gain;
        }
        float rgb[3];
        for (std::size_t c = 0; c < 3; ++c)
            rgb[c] = matrix_[c * 3] * own[0] + matrix_[c * 3 + 1] * own[1]
                + matrix_[c * 3 + 2] * own[2];
        if (!scale_.empty())
            compress(rgb);
        for (int c = 0; c < 3; ++c)
            out[2 - c]
                = codes[static_cast<std::size_t>(std::clamp(rgb[c], 0.0F, 1.0F) * 65535.0F + 0.5F)];
        out[3] = static_cast<std::uint8_t>((in[3] * 255U + 32767U) / 65535U);
    }
}

} // namespace pixelhain
