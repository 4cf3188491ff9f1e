#include "images/DisplayPixelSize.h"
#include <array>
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

TEST_CASE("the largest screen in device pixels decides the display size")
{
    std::array const screens { Screen { 1920, 1080, 2 }, Screen { 2560, 1440, 1 } };
    CHECK(displayPixelSizeFor(screens) == 3840);
}

TEST_CASE("an upright screen counts by its height")
{
    std::array const screens { Screen { 1080, 1920, 1 } };
    CHECK(displayPixelSizeFor(screens) == 1920);
}

TEST_CASE("a single 800 x 600 screen at scale 1 gives 1024")
{
    std::array const screens { Screen { 800, 600, 1 } };
    CHECK(displayPixelSizeFor(screens) == 1024);
}

TEST_CASE("no screen gives 2880")
{
    CHECK(displayPixelSizeFor({}) == 2880);
}

TEST_CASE("a fractional scale is cut to whole pixels")
{
    std::array const screens { Screen { 1707, 960, 1.5 } };
    CHECK(displayPixelSizeFor(screens) == 2560);
}

TEST_CASE("a screen without a sensible size does no harm")
{
    auto const infinite = std::numeric_limits<double>::infinity();
    auto const none = std::numeric_limits<double>::quiet_NaN();
    std::array const huge { Screen { infinite, 1080, 2 } };
    CHECK(displayPixelSizeFor(huge) == 65535);
    std::array const unknown { Screen { none, none, 1 } };
    CHECK(displayPixelSizeFor(unknown) == 1024);
}
