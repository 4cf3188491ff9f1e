#include "posix/EventBatches.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

EventBatches::Time at(std::chrono::milliseconds time)
{
    return EventBatches::Time(1h + time);
}

} // namespace

TEST_CASE("the first event is told at once and nothing is due after it")
{
    EventBatches batches;
    CHECK(batches.event(at(0ms)));
    CHECK_FALSE(batches.due());
    CHECK_FALSE(batches.expire(at(5000ms)));
}

TEST_CASE("events within the second are told together at its end")
{
    EventBatches batches;
    CHECK(batches.event(at(0ms)));
    CHECK_FALSE(batches.event(at(1ms)));
    CHECK_FALSE(batches.event(at(999ms)));
    REQUIRE(batches.due());
    CHECK(*batches.due() == at(1000ms));
    CHECK_FALSE(batches.expire(at(999ms)));
    CHECK(batches.expire(at(1000ms)));
    CHECK_FALSE(batches.due());
}

TEST_CASE("a steady stream of events is told once a second")
{
    EventBatches batches;
    int told = 0;
    for (auto time = 0ms; time < 10'000ms; time += 10ms)
        told += batches.expire(at(time)) || batches.event(at(time)) ? 1 : 0;
    CHECK(told == 10);
}

TEST_CASE("an event after a quiet second is told at once again")
{
    EventBatches batches;
    CHECK(batches.event(at(0ms)));
    CHECK(batches.event(at(1000ms)));
    CHECK_FALSE(batches.event(at(1500ms)));
    CHECK(batches.expire(at(2000ms)));
    CHECK_FALSE(batches.event(at(2999ms)));
    CHECK(batches.expire(at(3000ms)));
    CHECK(batches.event(at(4000ms)));
}

TEST_CASE("an event that comes when the gathered ones are overdue takes them along")
{
    EventBatches batches;
    CHECK(batches.event(at(0ms)));
    CHECK_FALSE(batches.event(at(500ms)));
    CHECK(batches.event(at(1200ms)));
    CHECK_FALSE(batches.due());
}
