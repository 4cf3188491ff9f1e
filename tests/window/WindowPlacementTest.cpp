#include "window/WindowPlacement.h"
#include "support/FakePreferences.h"
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

namespace {

constexpr Rect screen { 0, 0, 1920, 1080 };
constexpr Rect leftScreen { -1600, 100, 1600, 860 };
constexpr Rect both[] { screen, leftScreen };
constexpr std::span<Rect const> one(both, 1);

WindowPlacement placed(Point position, double width = 1200, double height = 800)
{
    return { position, width, height, false, 230 };
}

} // namespace

TEST_CASE("the first window has 1200 × 800 points, and the folders 230 of them")
{
    CHECK(readPlacement(FakePreferences()) == WindowPlacement { {}, 1200, 800, false, 230 });
}

TEST_CASE("a placement comes back as it was kept")
{
    FakePreferences preferences;
    WindowPlacement const kept { Point { -40, 25 }, 900, 640, true, 301 };
    writePlacement(preferences, kept);
    CHECK(readPlacement(preferences) == kept);
}

TEST_CASE("where the desktop places windows the place that is kept stays for another desktop")
{
    FakePreferences preferences;
    writePlacement(preferences, placed({ 40, 25 }));
    writePlacement(preferences, { {}, 900, 640, false, 230 });
    CHECK(readPlacement(preferences).position == Point { 40, 25 });
    CHECK(readPlacement(preferences).width == 900);
}

TEST_CASE("settings of the wrong type or out of range count as missing")
{
    auto const infinite = std::numeric_limits<double>::infinity();
    auto const nothing = std::numeric_limits<double>::quiet_NaN();
    for (FakePreferences::Value const& wrong : std::initializer_list<FakePreferences::Value> {
             std::string("12"), true, infinite, -infinite, nothing, 1e300, -1e300, 7.0 }) {
        FakePreferences preferences;
        for (auto const* key : { "windowWidth", "windowHeight", "sidebarWidth" })
            preferences.values.insert_or_assign(key, wrong);
        preferences.values.insert_or_assign("windowMaximized", 1.0);
        CHECK(readPlacement(preferences) == WindowPlacement { {}, 1200, 800, false, 230 });
    }
    FakePreferences preferences;
    preferences.setNumber("windowX", 1e12);
    preferences.setNumber("windowY", 5);
    preferences.setNumber("sidebarWidth", 421);
    CHECK(readPlacement(preferences) == WindowPlacement { {}, 1200, 800, false, 230 });
}

TEST_CASE("half a position is none")
{
    FakePreferences preferences;
    preferences.setNumber("windowX", 100);
    CHECK_FALSE(readPlacement(preferences).position);
}

TEST_CASE("a window is never larger than what its screen leaves to it")
{
    Rect const small[] { { 0, 0, 960, 520 } };
    auto const first = fitted(readPlacement(FakePreferences()), small);
    CHECK(first.width == 960);
    CHECK(first.height == 520);
    CHECK(fitted(placed({ -1500, 120 }, 1800, 1000), both) == placed({ -1600, 100 }, 1600, 860));
}

TEST_CASE("a window that is in view stays where it was")
{
    CHECK(fitted(placed({ 300, 200 }), one) == placed({ 300, 200 }));
    CHECK(fitted(placed({ -1500, 120 }), both) == placed({ -1500, 120 }));
}

TEST_CASE("a window that hangs over the edge is put wholly into view")
{
    CHECK(fitted(placed({ 1800, 1000 }), one) == placed({ 720, 280 }));
    CHECK(fitted(placed({ -300, -20 }), one) == placed({ 0, 0 }));
}

TEST_CASE("the place of a window on a screen that is gone is left to the desktop")
{
    auto const moved = fitted(placed({ -1500, 120 }), one);
    CHECK_FALSE(moved.position);
    CHECK(moved.width == 1200);
    CHECK_FALSE(fitted(placed({ 300, 1080 }), one).position);
    CHECK_FALSE(fitted(placed({ 1900, 0 }), one).position);
}

TEST_CASE("a window fits its screen with its frame, which has room at the screen's edges")
{
    WindowFrame const frame { 3, 24, 5, 6 };
    auto const whole = fitted(placed({ 0, 0 }, 1920, 1080), one, frame);
    CHECK(whole == placed({ 0, 0 }, 1912, 1050));
    auto const corner = fitted(placed({ 1800, 1000 }, 1200, 800), one, frame);
    CHECK(corner == placed({ 1920 - 1208, 1080 - 830 }));
    CHECK(fitted(placed({ 300, 200 }), one, frame) == placed({ 300, 200 }));
}

TEST_CASE("a size that a small screen had no room for is kept for a larger one")
{
    auto const wanted = placed({ 300, 200 }, 1800, 1000);
    auto const shrunken = placed({ 0, 0 }, 960, 520);
    CHECK(kept(wanted, shrunken, shrunken) == wanted);
    CHECK(kept(wanted, shrunken, placed({ 0, 0 }, 960, 480)) == placed({ 300, 200 }, 1800, 480));
    CHECK(kept(wanted, shrunken, placed({ 9, 0 }, 800, 520)) == placed({ 9, 0 }, 800, 1000));
    CHECK(kept(wanted, wanted, placed({ 5, 6 }, 700, 500)) == placed({ 5, 6 }, 700, 500));
}

TEST_CASE("without any screen nothing is changed")
{
    CHECK(fitted(placed({ 300, 200 }), {}) == placed({ 300, 200 }));
}
