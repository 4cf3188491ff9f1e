#include "base/Resample.h"
#include "base/Orientation.h"
#include <array>
#include <cmath>
#include <doctest/doctest.h>
#include <numbers>

using namespace pixelhain;

namespace {

Bitmap noise(PixelSize size, bool isOpaque = true)
{
    auto bitmap = Bitmap::allocate(size, isOpaque);
    std::uint32_t state = 1;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            auto* at = bitmap.row(y) + std::ptrdiff_t(x) * 4;
            state = state * 1664525 + 1013904223;
            at[3] = isOpaque ? 255 : static_cast<std::uint8_t>(state >> 24);
            for (int c = 0; c < 3; ++c) {
                state = state * 1664525 + 1013904223;
                at[c] = static_cast<std::uint8_t>((state >> 24) * at[3] / 255);
            }
        }
    }
    return bitmap;
}

Bitmap resampledBy(ResampleKernels const& kernels, Bitmap const& from, PixelSize to)
{
    auto target = Bitmap::allocate(to, from.isOpaque);
    RowResampler resampler(from.size, target, kernels);
    for (int y = 0; y < from.size.height; ++y) {
        std::copy_n(from.row(y), from.size.width * 4, resampler.nextRow());
        resampler.commitRow();
    }
    CHECK(resampler.rowsWritten() == to.height);
    return target;
}

int largestDifference(Bitmap const& a, Bitmap const& b)
{
    int largest = 0;
    for (int y = 0; y < a.size.height; ++y) {
        for (int x = 0; x < a.size.width * 4; ++x)
            largest = std::max(largest, std::abs(a.row(y)[x] - b.row(y)[x]));
    }
    return largest;
}

double lanczos3(double x)
{
    auto const angle = std::numbers::pi * x;
    if (std::abs(x) < 1e-9)
        return 1;
    return std::abs(x) >= 3 ? 0 : 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

// The filter as the textbook has it, both ways at once.
double exactValue(Bitmap const& from, PixelSize to, int x, int y, int channel)
{
    auto const scaleX = double(from.size.width) / to.width;
    auto const scaleY = double(from.size.height) / to.height;
    double sum = 0;
    double weights = 0;
    for (int v = 0; v < from.size.height; ++v) {
        auto const down = lanczos3((v + 0.5 - (y + 0.5) * scaleY) / std::max(scaleY, 1.0));
        if (down == 0)
            continue;
        for (int u = 0; u < from.size.width; ++u) {
            auto const weight
                = down * lanczos3((u + 0.5 - (x + 0.5) * scaleX) / std::max(scaleX, 1.0));
            sum += weight * from.row(v)[u * 4 + channel];
            weights += weight;
        }
    }
    return std::clamp(sum / weights, 0.0, 255.0);
}

} // namespace

TEST_CASE("sizes are fitted to the longest side, rounded, never enlarged")
{
    CHECK(fittedSize({ 6000, 4000 }, 384) == PixelSize { 384, 256 });
    CHECK(fittedSize({ 4000, 6000 }, 384) == PixelSize { 256, 384 });
    CHECK(fittedSize({ 100, 80 }, 512) == PixelSize { 100, 80 });
    CHECK(fittedSize({ 1000, 1 }, 10) == PixelSize { 10, 1 });
    CHECK(fittedSize({ 4, 3 }, 2) == PixelSize { 2, 2 });
    CHECK(fittedSize({ 640, 480 }, 0) == PixelSize { 640, 480 });
}

TEST_CASE("every result is within one level of the exact filter")
{
    struct Step {
        PixelSize from;
        PixelSize to;
    };
    for (auto const& step : { Step { { 90, 62 }, { 41, 29 } }, Step { { 31, 17 }, { 31, 9 } },
             Step { { 13, 11 }, { 40, 37 } }, Step { { 5, 4 }, { 1, 1 } } }) {
        CAPTURE(step.from.width);
        auto const to = step.to;
        auto const picture = noise(step.from);
        auto const scaled = resampled(picture, to);
        double largest = 0;
        for (int y = 0; y < to.height; ++y) {
            for (int x = 0; x < to.width; ++x) {
                for (int c = 0; c < 4; ++c)
                    largest = std::max(largest,
                        std::abs(scaled.row(y)[x * 4 + c] - exactValue(picture, to, x, y, c)));
            }
        }
        CHECK(largest <= 1.0);
    }
}

TEST_CASE("the processor's own loops give what plain arithmetic gives")
{
    for (auto const& size :
        { PixelSize { 384, 256 }, PixelSize { 33, 21 }, PixelSize { 700, 3 } }) {
        for (auto const isOpaque : { true, false }) {
            auto const picture = noise({ 750, 500 }, isOpaque);
            CHECK(largestDifference(resampledBy(resampleKernels(), picture, size),
                      resampledBy(plainResampleKernels(), picture, size))
                == 0);
        }
    }
}

TEST_CASE("a flat picture stays flat at any size")
{
    auto flat = Bitmap::allocate({ 1001, 333 }, true);
    for (int y = 0; y < flat.size.height; ++y)
        std::fill_n(flat.row(y), flat.size.width * 4, std::uint8_t { 255 });
    for (auto const& size : { PixelSize { 500, 100 }, PixelSize { 10, 3 }, PixelSize { 1, 1 },
             PixelSize { 1500, 400 } }) {
        auto const scaled = resampled(flat, size);
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width * 4; ++x)
                REQUIRE(scaled.row(y)[x] == 255);
        }
    }
}

TEST_CASE("a strong reduction keeps means and gradients")
{
    auto ramp = Bitmap::allocate({ 4000, 90 }, true);
    for (int y = 0; y < 90; ++y) {
        for (int x = 0; x < 4000; ++x) {
            std::uint8_t const pixel[] { static_cast<std::uint8_t>(x * 255 / 3999),
                static_cast<std::uint8_t>((x + y) % 2 * 255), 100, 255 };
            std::copy_n(pixel, 4, ramp.row(y) + std::ptrdiff_t(x) * 4);
        }
    }
    auto const scaled = resampled(ramp, { 100, 2 });
    for (int x = 3; x < 97; ++x) {
        auto const* at = scaled.row(1) + std::ptrdiff_t(x) * 4;
        CHECK(std::abs(at[0] - (x + 0.5) * 2.55) <= 1.5);
        CHECK(std::abs(at[1] - 127.5) <= 1.5);
        CHECK(at[2] == 100);
    }
}

TEST_CASE("colours never exceed their alpha")
{
    auto const picture = noise({ 97, 55 }, false);
    auto const scaled = resampled(picture, { 40, 31 });
    for (int y = 0; y < 31; ++y) {
        for (int x = 0; x < 40; ++x) {
            auto const* at = scaled.row(y) + std::ptrdiff_t(x) * 4;
            for (int c = 0; c < 3; ++c)
                REQUIRE(at[c] <= at[3]);
        }
    }
}

TEST_CASE("each orientation puts the stored top left corner where EXIF says")
{
    struct Corner {
        int orientation;
        bool right;
        bool bottom;
    };
    auto const stored = noise({ 37, 21 });
    auto const* first = stored.row(0);
    auto const* second = stored.row(0) + 4;
    for (auto const& corner : { Corner { 1, false, false }, Corner { 2, true, false },
             Corner { 3, true, true }, Corner { 4, false, true }, Corner { 5, false, false },
             Corner { 6, true, false }, Corner { 7, true, true }, Corner { 8, false, true } }) {
        auto const orientation = corner.orientation;
        CAPTURE(orientation);
        auto const turned = upright(stored, orientation);
        auto const size = turned.size;
        REQUIRE(size == uprightSize(stored.size, orientation));
        auto const x = corner.right ? size.width - 1 : 0;
        auto const y = corner.bottom ? size.height - 1 : 0;
        CHECK(std::equal(first, first + 4, turned.row(y) + std::ptrdiff_t(x) * 4));
        auto const nextX = isQuarterTurn(orientation) ? x : corner.right ? x - 1 : x + 1;
        auto const nextY = !isQuarterTurn(orientation) ? y : corner.bottom ? y - 1 : y + 1;
        CHECK(std::equal(second, second + 4, turned.row(nextY) + std::ptrdiff_t(nextX) * 4));
    }
}
