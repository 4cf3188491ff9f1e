#include "images/PagingPace.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;

namespace {

struct Desk {
    FakeLoop loop;
    int rests = 0;
    PagingPace pace { loop, [this] { ++rests; } };
    int steps = 0;

    void step() { pace.step(FileUrl("/" + std::to_string(++steps))); }
};

} // namespace

TEST_CASE("one step, and one after a pause, are no hurry")
{
    Desk desk;
    desk.step();
    CHECK_FALSE(desk.pace.isHasty());
    desk.loop.advance(PagingPace::pause);
    desk.step();
    CHECK_FALSE(desk.pace.isHasty());
    desk.loop.advance(PagingPace::pause);
    CHECK(desk.rests == 0);
    CHECK(desk.loop.timers() == 0);
}

TEST_CASE("steps that follow each other at once are a hurry until they pause")
{
    Desk desk;
    desk.step();
    for (int i = 0; i < 20; ++i) {
        desk.loop.advance(PagingPace::pause - std::chrono::milliseconds(1));
        desk.step();
        CHECK(desk.pace.isHasty());
    }
    CHECK(desk.rests == 0);
    desk.loop.advance(PagingPace::pause);
    CHECK_FALSE(desk.pace.isHasty());
    CHECK(desk.rests == 1);
    desk.step();
    CHECK_FALSE(desk.pace.isHasty());
}

TEST_CASE("the photo that is shown already is no step")
{
    Desk desk;
    desk.pace.step(FileUrl("/1"));
    desk.pace.step(FileUrl("/1"));
    CHECK_FALSE(desk.pace.isHasty());
    desk.loop.advance(std::chrono::milliseconds(30));
    desk.pace.step(FileUrl("/1"));
    desk.loop.advance(PagingPace::pause - std::chrono::milliseconds(30));
    CHECK(desk.loop.timers() == 0);
}

TEST_CASE("who goes while there is a hurry is not called back")
{
    FakeLoop loop;
    int rests = 0;
    {
        PagingPace pace(loop, [&] { ++rests; });
        pace.step(FileUrl("/1"));
        pace.step(FileUrl("/2"));
    }
    loop.advance(std::chrono::seconds(1));
    CHECK(rests == 0);
}
