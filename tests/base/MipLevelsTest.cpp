#include "base/MipLevels.h"
#include "base/Resample.h"
#include <algorithm>
#include <cstdlib>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

Bitmap waves(PixelSize size)
{
    auto bitmap = Bitmap::allocate(size, true);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width * 4; ++x)
            bitmap.row(y)[x] = x % 4 == 3 ? std::uint8_t { 255 }
                                          : static_cast<std::uint8_t>((x * x / 64 + y * 5) & 255);
    return bitmap;
}

Bitmap flat(PixelSize size, std::uint8_t value)
{
    auto bitmap = Bitmap::allocate(size, true);
    for (int y = 0; y < size.height; ++y)
        std::fill_n(bitmap.row(y), size.width * 4, value);
    return bitmap;
}

int largestDifference(Bitmap const& a, Bitmap const& b, PixelRect const& at)
{
    int largest = 0;
    for (int y = 0; y < a.size.height; ++y)
        for (int x = 0; x < a.size.width * 4; ++x)
            largest = std::max(largest, std::abs(a.row(y)[x] - b.row(at.y + y)[at.x * 4 + x]));
    return largest;
}

} // namespace

TEST_CASE("a half has the mean of four pixels, at odd edges of those that are there")
{
    auto bitmap = Bitmap::allocate({ 3, 3 }, true);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 12; ++x)
            bitmap.row(y)[x] = static_cast<std::uint8_t>(40 * y + 10 * (x / 4));
    auto const half = halved(bitmap);
    REQUIRE(half.size == PixelSize { 2, 2 });
    CHECK(half.row(0)[0] == 25);
    CHECK(half.row(0)[4] == 40);
    CHECK(half.row(1)[0] == 85);
    CHECK(half.row(1)[4] == 100);
}

TEST_CASE("levels are halved down to what is wanted, the picture itself is not copied")
{
    auto const picture = waves({ 1001, 700 });
    MipLevels const levels(picture, 100);
    REQUIRE(levels.all().size() == 4);
    CHECK(levels.all().front().bitmap.pixels == picture.pixels);
    CHECK(levels.all().back().bitmap.size == PixelSize { 126, 88 });
    CHECK(levels.all().back().width == 1001.0 / 8);
    CHECK(levels.levelFor({ 500, 350 }, 1).bitmap.size == PixelSize { 501, 350 });
    CHECK(levels.levelFor({ 501, 351 }, 1).bitmap.size == PixelSize { 1001, 700 });
    CHECK(levels.levelFor({ 1, 1 }, 1).bitmap.size == PixelSize { 126, 88 });
    CHECK(levels.levelFor({ 5000, 5000 }, 2).bitmap.size == PixelSize { 1001, 700 });
    CHECK(MipLevels().isEmpty());
}

TEST_CASE("a part is exactly what the whole would have there")
{
    MipLevels const levels(waves({ 1600, 1100 }), 64);
    for (auto const whole : { PixelSize { 613, 421 }, PixelSize { 1600, 1100 },
             PixelSize { 1999, 1374 }, PixelSize { 91, 63 } }) {
        auto const all = levels.sharp({ whole, { 0, 0, whole.width, whole.height } });
        REQUIRE(all.size == whole);
        for (auto const& part : { PixelRect { 0, 0, 40, 30 }, PixelRect { 17, 13, 50, 40 },
                 PixelRect { whole.width - 33, whole.height - 21, 33, 21 } }) {
            auto const drawn = levels.sharp({ whole, part });
            REQUIRE(drawn.size == part.size());
            CHECK(largestDifference(drawn, all, part) <= 1); // rounding
        }
    }
}

TEST_CASE("a large picture that is drawn in two halves shows no seam")
{
    MipLevels const levels(waves({ 1500, 1100 }), 64);
    PixelSize const whole { 1311, 961 };
    auto const all = levels.sharp({ whole, { 0, 0, whole.width, whole.height } });
    for (int y = 0; y < whole.height; y += 31) {
        PixelRect const strip { 0, y, whole.width, std::min(31, whole.height - y) };
        CHECK(largestDifference(levels.sharp({ whole, strip }), all, strip) <= 1);
    }
}

TEST_CASE("what is drawn well stays flat where the picture is, at every size")
{
    MipLevels const levels(flat({ 777, 555 }, 93), 64);
    for (int width = 1; width < 2000; width += 37) {
        PixelSize const whole { width, std::max(1, width * 555 / 777) };
        auto const drawn = levels.sharp({ whole, { 0, 0, whole.width, whole.height } });
        REQUIRE(drawn.size == whole);
        CHECK(largestDifference(drawn, flat(whole, 93), {}) == 0);
    }
}

TEST_CASE("nothing is drawn of a part outside the picture")
{
    MipLevels const levels(flat({ 20, 20 }, 9), 64);
    CHECK(levels.sharp({ { 40, 40 }, {} }).isEmpty());
    CHECK(levels.sharp({ { 40, 40 }, { 30, 30, 20, 5 } }).isEmpty());
    CHECK(levels.sharp({ { 40, 40 }, { -1, 0, 5, 5 } }).isEmpty());
    CHECK(MipLevels().sharp({ { 40, 40 }, { 0, 0, 5, 5 } }).isEmpty());
}
