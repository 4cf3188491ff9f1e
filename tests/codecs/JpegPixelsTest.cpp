#include "codecs/JpegPixels.h"
#include <doctest/doctest.h>
#include <random>

using namespace pixelhain;

TEST_CASE("the conversion of colours is the same on every processor")
{
    std::mt19937 random(1);
    for (std::size_t count = 0; count < 70; ++count) {
        std::array<std::vector<std::int8_t>, 4> planes;
        std::array<std::int8_t const*, 4> samples {};
        for (std::size_t i = 0; i < planes.size(); ++i) {
            for (std::size_t x = 0; x < count; ++x)
                planes[i].push_back(static_cast<std::int8_t>(random()));
            samples[i] = planes[i].data();
        }
        std::vector<std::uint8_t> fast(count * 4 + 1, 7);
        auto plain = fast;
        jpegColorKernels().toColor(samples.data(), fast.data(), count);
        plainJpegColorKernels().toColor(samples.data(), plain.data(), count);
        CHECK(fast == plain);
        CHECK(fast.back() == 7);
        jpegColorKernels().toInk(samples.data(), fast.data(), count);
        plainJpegColorKernels().toInk(samples.data(), plain.data(), count);
        CHECK(fast == plain);
        CHECK(fast.back() == 7);
    }
}

TEST_CASE("grey stays grey and the ends of the range stay within it")
{
    std::int8_t const bright[] { -128, 0, 127, 127, -128 };
    std::int8_t const blue[] { 0, 0, 0, 127, -128 };
    std::int8_t const red[] { 0, 0, 0, 127, -128 };
    std::int8_t const* const samples[] { bright, blue, red };
    std::array<std::uint8_t, 20> row {};
    jpegColorKernels().toColor(samples, row.data(), 5);
    CHECK(row
        == std::array<std::uint8_t, 20> { 0, 0, 0, 255, 128, 128, 128, 255, 255, 255, 255, 255, 255,
            121, 255, 255, 0, 135, 0, 255 });
}
