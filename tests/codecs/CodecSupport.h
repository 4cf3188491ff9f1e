#pragma once
#include "codecs/ImageCodecs.h"
#include "support/ImageWriters.h"
#include "support/MemoryBytes.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace pixelhain {

inline std::unique_ptr<ImageSource> opened(FileBytes bytes, MemoryBytes::Reads* reads = nullptr)
{
    return openImage(memoryBytes(std::move(bytes), reads));
}

/// A picture whose corners differ: red rises to the right, green downwards, and the top left
/// quarter is bluish.
inline RgbaPixels sampleColors(PixelSize size)
{
    auto pixels = RgbaPixels::filled(size, 0x000000FF);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            auto* at = pixels.at(x, y);
            at[0] = static_cast<std::uint8_t>(40 + 200 * x / size.width);
            at[1] = static_cast<std::uint8_t>(40 + 200 * y / size.height);
            at[2] = x < size.width / 2 && y < size.height / 2 ? 200 : 40;
        }
    }
    return pixels;
}

/// The same with an alpha that falls from left to right, and a hole at the top right.
inline RgbaPixels sampleWithAlpha(PixelSize size)
{
    auto pixels = sampleColors(size);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            auto const isHole = x >= size.width * 3 / 4 && y < size.height / 4;
            pixels.at(x, y)[3] = static_cast<std::uint8_t>(isHole ? 0 : 255 - 100 * x / size.width);
        }
    }
    return pixels;
}

/// The mean difference of the channels, `wanted` taken at the same relative place, on white.
inline double meanDifference(Bitmap const& bitmap, RgbaPixels const& wanted)
{
    double sum = 0;
    auto const size = bitmap.size;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            auto const* have = bitmap.row(y) + std::ptrdiff_t(x) * 4;
            auto const* want = wanted.at(
                std::min(wanted.size.width - 1, (2 * x + 1) * wanted.size.width / (2 * size.width)),
                std::min(
                    wanted.size.height - 1, (2 * y + 1) * wanted.size.height / (2 * size.height)));
            for (int c = 0; c < 3; ++c) {
                auto const ground = 255.0 - want[3];
                auto const expected = want[2 - c] * want[3] / 255.0 + ground;
                sum += std::abs(have[c] + 255.0 - have[3] - expected);
            }
        }
    }
    return sum / (3.0 * size.width * size.height);
}

/// The mean difference of the channels of two pictures of one size.
inline double meanDifference(Bitmap const& a, Bitmap const& b)
{
    double sum = 0;
    for (int y = 0; y < a.size.height; ++y) {
        for (int x = 0; x < a.size.width * 4; ++x)
            sum += std::abs(a.row(y)[x] - b.row(y)[x]);
    }
    return sum / (4.0 * a.size.width * a.size.height);
}

/// B, G, R, A of one pixel.
inline std::uint8_t const* pixelAt(Bitmap const& bitmap, int x, int y)
{
    return bitmap.row(y) + std::ptrdiff_t(x) * 4;
}

} // namespace pixelhain
