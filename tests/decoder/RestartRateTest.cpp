#include "decoder/RestartRate.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// Virtual time.
struct Deaths {
    RestartRate rate;
    RestartRate::Time now { 1h };

    void die(int count = 1)
    {
        for (int i = 0; i < count; ++i)
            rate.died(now);
    }
    RestartRate::Duration wait() const
    {
        return rate.next() > now ? rate.next() - now : RestartRate::Duration {};
    }
};

} // namespace

TEST_CASE("five deaths in ten seconds are replaced at once")
{
    Deaths deaths;
    deaths.die(5);
    CHECK(deaths.wait() == 0s);
    deaths.now += 9s;
    CHECK(deaths.wait() == 0s);
}

TEST_CASE(
    "the sixth death in ten seconds makes the next worker wait, each further one twice as long")
{
    Deaths deaths;
    deaths.die(6);
    CHECK(deaths.wait() == 250ms);
    deaths.now += 250ms;
    CHECK(deaths.wait() == 0s);
    deaths.die();
    CHECK(deaths.wait() == 500ms);
    deaths.now += 500ms;
    deaths.die();
    CHECK(deaths.wait() == 1s);
}

TEST_CASE("no worker waits longer than half a minute, however many died")
{
    Deaths deaths;
    deaths.die(6);
    for (int i = 0; i < 40; ++i) {
        deaths.now += deaths.wait();
        deaths.die();
        CHECK(deaths.wait() <= 30s);
    }
    CHECK(deaths.wait() == 30s);
}

TEST_CASE("workers that die together, or while others wait, count once")
{
    Deaths deaths;
    deaths.die(20);
    CHECK(deaths.wait() == 250ms);
    deaths.now += 100ms;
    deaths.die();
    CHECK(deaths.wait() == 150ms);
}

TEST_CASE("deaths that lie far apart are replaced at once for ever")
{
    Deaths deaths;
    for (int i = 0; i < 100; ++i) {
        deaths.die();
        CHECK(deaths.wait() == 0s);
        deaths.now += 2001ms;
    }
}

TEST_CASE("after a quiet time the waits begin anew")
{
    Deaths deaths;
    deaths.die(6);
    for (int i = 0; i < 3; ++i) {
        deaths.now += deaths.wait();
        deaths.die();
    }
    CHECK(deaths.wait() == 2s);
    deaths.now += 2s + WorkerLimits::deathsWithin + 1ms;
    deaths.die(5);
    CHECK(deaths.wait() == 0s);
    deaths.die();
    CHECK(deaths.wait() == 250ms);
}
