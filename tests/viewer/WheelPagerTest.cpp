#include "viewer/WheelPager.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

TEST_CASE("a notch of the wheel is one photo, towards the user the next")
{
    FakeLoop loop;
    WheelPager pager(loop);
    CHECK(pager.turn(-120) == +1);
    CHECK(pager.turn(120) == -1);
    CHECK(pager.turn(-120) == +1);
}

TEST_CASE("several notches at once are one photo")
{
    FakeLoop loop;
    WheelPager pager(loop);
    CHECK(pager.turn(-360) == +1);
    CHECK(pager.turn(-30) == 0);
}

TEST_CASE("small turns of a fine wheel add up")
{
    FakeLoop loop;
    WheelPager pager(loop);
    for (int i = 0; i < 7; ++i)
        CHECK(pager.turn(-15) == 0);
    CHECK(pager.turn(-15) == +1);
    CHECK(pager.turn(-15) == 0);
}

TEST_CASE("turning back, or a pause, forgets a part of a notch")
{
    FakeLoop loop;
    WheelPager pager(loop);
    CHECK(pager.turn(-100) == 0);
    CHECK(pager.turn(100) == 0);
    CHECK(pager.turn(30) == -1);
    CHECK(pager.turn(-100) == 0);
    loop.advance(399ms);
    CHECK(pager.turn(-10) == 0);
    loop.advance(400ms);
    CHECK(pager.turn(-100) == 0);
}

TEST_CASE("no photo is passed before it was shown, and no turn is made up for")
{
    FakeLoop loop;
    WheelPager pager(loop);
    CHECK(pager.turn(-120) == +1);
    pager.wait();
    CHECK(pager.turn(-120) == 0);
    CHECK(pager.turn(-120) == 0);
    pager.shown();
    CHECK(pager.turn(-119) == 0);
    CHECK(pager.turn(-1) == +1);
}
