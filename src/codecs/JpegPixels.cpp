#include "codecs/JpegPixels.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

constexpr int middle = 128;

std::uint8_t whole(std::int8_t sample)
{
    return static_cast<std::uint8_t>(sample + middle);
}

// The factors of JFIF in 1/2^16: 1.402, 1.772, 0.34414 and 0.71414.
template <bool isInk>
[[gnu::always_inline]] inline void convert(
    std::int8_t const* const* samples, std::uint8_t* __restrict row, std::size_t count)
{
    constexpr int shift = 16;
    constexpr int half = 1 << (shift - 1);
    auto const* const bright = samples[0];
    auto const* const blue = samples[1];
    auto const* const red = samples[2];
    for (std::size_t x = 0; x < count; ++x) {
        int const y = bright[x] + middle;
        int const b = std::clamp(y + ((116130 * blue[x] + half) >> shift), 0, 255);
        int const g = std::clamp(y + ((-22554 * blue[x] - 46802 * red[x] + half) >> shift), 0, 255);
        int const r = std::clamp(y + ((91881 * red[x] + half) >> shift), 0, 255);
        row[4 * x] = static_cast<std::uint8_t>(isInk ? 255 - r : b);
        row[4 * x + 1] = static_cast<std::uint8_t>(isInk ? 255 - g : g);
        row[4 * x + 2] = static_cast<std::uint8_t>(isInk ? 255 - b : r);
        row[4 * x + 3] = isInk ? static_cast<std::uint8_t>(samples[3][x] + middle) : 255;
    }
}

template <bool isInk>
void plain(std::int8_t const* const* samples, std::uint8_t* row, std::size_t count)
{
    convert<isInk>(samples, row, count);
}

#if defined(__x86_64__)
template <bool isInk>
__attribute__((target("avx2"))) void avx2(
    std::int8_t const* const* samples, std::uint8_t* row, std::size_t count)
{
    convert<isInk>(samples, row, count);
}
#endif

} // namespace

JpegColorKernels const& plainJpegColorKernels()
{
    static constexpr JpegColorKernels kernels { plain<false>, plain<true> };
    return kernels;
}

JpegColorKernels const& jpegColorKernels()
{
#if defined(__x86_64__)
    static constexpr JpegColorKernels kernels { avx2<false>, avx2<true> };
    static bool const hasAvx2 = __builtin_cpu_supports("avx2") != 0;
    return hasAvx2 ? kernels : plainJpegColorKernels();
#else
    return plainJpegColorKernels();
#endif
}

JpegPixels::JpegPixels(std::vector<JpegPlane> const& planes, JpegColors colors, int width)
    : planes_(planes)
    , colors_(colors)
    , width_(static_cast<std::size_t>(width))
{
    for (std::size_t i = 0; i < planes.size(); ++i) {
        if (planes[i].repeatsAcross > 1)
            rows_[i].resize(width_);
    }
}

std::int8_t const* JpegPixels::stretched(std::size_t plane, int y)
{
    auto const& from = planes_[plane];
    auto const* const samples = from.sampleRow(y / from.repeatsDown);
    auto const repeats = static_cast<std::size_t>(from.repeatsAcross);
    if (repeats == 1)
        return samples;
    auto* const row = rows_[plane].data();
    if (repeats == 2) {
        for (std::size_t x = 0; x < width_ / 2; ++x)
            row[2 * x] = row[2 * x + 1] = samples[x];
        if (width_ % 2 != 0)
            row[width_ - 1] = samples[width_ / 2];
    } else {
        for (std::size_t x = 0; x < width_; ++x)
            row[x] = samples[x / repeats];
    }
    return row;
}

void JpegPixels::writeRow(int y, std::uint8_t* row)
{
    std::array<std::int8_t const*, 4> samples {};
    for (std::size_t i = 0; i < planes_.size(); ++i)
        samples[i] = stretched(i, y);
    switch (colors_) {
    case JpegColors::ycbcr:
        jpegColorKernels().toColor(samples.data(), row, width_);
        return;
    case JpegColors::ycck:
        jpegColorKernels().toInk(samples.data(), row, width_);
        return;
    case JpegColors::grey:
        samples[1] = samples[2] = samples[0];
        break;
    case JpegColors::rgb:
        std::swap(samples[0], samples[2]);
        break;
    case JpegColors::cmyk:
        break;
    }
    auto const hasFourth = colors_ == JpegColors::cmyk;
    for (std::size_t x = 0; x < width_; ++x, row += 4) {
        for (std::size_t i = 0; i < 3; ++i)
            row[i] = whole(samples[i][x]);
        row[3] = hasFourth ? whole(samples[3][x]) : 255;
    }
}

} // namespace pixelhain
