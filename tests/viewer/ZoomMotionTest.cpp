#include "viewer/ZoomMotion.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("movements begin and end where they should, and slow down")
{
    CHECK(easeOut(-1) == 0);
    CHECK(easeOut(0) == 0);
    CHECK(easeOut(1) == 1);
    CHECK(easeOut(7) == 1);
    CHECK(easeOut(0.5) - easeOut(0.4) > easeOut(0.9) - easeOut(0.8));
    CHECK(easeInOut(0) == 0);
    CHECK(easeInOut(0.5) == doctest::Approx(0.5));
    CHECK(easeInOut(1) == 1);
    CHECK(easeInOut(0.1) < 0.1);
    CHECK(easeInOut(0.9) > 0.9);
}

TEST_CASE("a zoom reaches its goal in its time and not before")
{
    ZoomMotion motion;
    motion.moveTo({ 2.5, { 40, 0 } }, Milliseconds(200), Milliseconds(1000));
    CHECK(motion.at(Milliseconds(1000)) == Zoom {});
    auto const half = motion.at(Milliseconds(1100));
    CHECK(half.scale == doctest::Approx(1 + 1.5 * 0.75));
    CHECK(half.offset.x == doctest::Approx(30));
    CHECK(motion.isMoving(Milliseconds(1199)));
    CHECK_FALSE(motion.isMoving(Milliseconds(1200)));
    CHECK(motion.at(Milliseconds(1200)) == Zoom { 2.5, { 40, 0 } });
}

TEST_CASE("another goal is gone to from where the motion stands")
{
    ZoomMotion motion;
    motion.moveTo({ 3, {} }, Milliseconds(200), Milliseconds(0));
    auto const there = motion.at(Milliseconds(50));
    motion.moveTo({ 1, {} }, Milliseconds(200), Milliseconds(50));
    CHECK(motion.at(Milliseconds(50)) == there);
    CHECK(motion.at(Milliseconds(250)) == Zoom {});
    motion.moveTo({ 4, {} }, Milliseconds(0), Milliseconds(100));
    CHECK(motion.at(Milliseconds(100)) == Zoom { 4, {} });
}
