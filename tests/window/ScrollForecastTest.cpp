#include "window/ScrollForecast.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

struct Scrolled {
    FakeLoop loop;
    int changes = 0;
    ScrollForecast forecast { loop, [this] { ++changes; } };

    // A movement of so many points every 10 ms.
    void scroll(double from, double step, int times)
    {
        for (int i = 0; i < times; ++i) {
            forecast.moveTo(from + step * i);
            loop.advance(10ms);
        }
    }
};

} // namespace

TEST_CASE("a single step out of rest foretells nothing, however long it is")
{
    Scrolled s;
    s.forecast.moveTo(100'000);
    CHECK(s.forecast.way(6) == 0);
    CHECK(s.forecast.leap() == 100'000);
    s.loop.advance(ScrollForecast::beat);
    CHECK(s.forecast.leap() == 0);
    s.loop.advance(1s);
    CHECK(s.forecast.way(6) == 0);
    CHECK(s.loop.timers() == 0);
}

TEST_CASE("where another list begins is no movement")
{
    Scrolled s;
    s.scroll(50'000, 2000, 20);
    s.forecast.forget();
    CHECK(s.forecast.way(1) == 0);
    CHECK(s.loop.timers() == 0);
    s.forecast.moveTo(0);
    CHECK(s.forecast.leap() == 0);
    CHECK(s.forecast.way(6) == 0);
    s.forecast.moveTo(300);
    CHECK(s.forecast.leap() == 300);
}

TEST_CASE("a steady movement goes on as it does")
{
    Scrolled s;
    s.scroll(0, 20, 50);
    CHECK(s.forecast.way(1) == doctest::Approx(100).epsilon(0.25));
    CHECK(s.forecast.way(6) == 6 * s.forecast.way(1));
    CHECK_FALSE(s.forecast.isUpward());
    s.scroll(1000, -20, 50);
    CHECK(s.forecast.way(1) == doctest::Approx(-100).epsilon(0.25));
    CHECK(s.forecast.isUpward());
}

TEST_CASE("a fast movement is known as such before the first beat is over")
{
    Scrolled s;
    s.forecast.moveTo(1000);
    s.forecast.moveTo(3000);
    CHECK(s.forecast.way(1) == 2000);
}

TEST_CASE("after two beats without a movement the gallery is at rest, and that is told")
{
    Scrolled s;
    s.scroll(0, 100, 20);
    auto const before = s.changes;
    s.loop.advance(2 * ScrollForecast::beat);
    CHECK(s.forecast.way(6) == 0);
    CHECK(s.changes > before);
    s.loop.advance(ScrollForecast::beat);
    CHECK(s.loop.timers() == 0);
    auto const after = s.changes;
    s.loop.advance(1s);
    CHECK(s.changes == after);
}

TEST_CASE("the same position again is no movement")
{
    Scrolled s;
    s.forecast.moveTo(0);
    CHECK(s.loop.timers() == 0);
    CHECK(s.changes == 0);
}

TEST_CASE("a wheel that is turned notch by notch is at rest in between")
{
    Scrolled s;
    for (int notch = 1; notch <= 5; ++notch) {
        s.forecast.moveTo(120.0 * notch);
        CHECK(s.forecast.way(6) == 0);
        s.loop.advance(200ms);
    }
}
