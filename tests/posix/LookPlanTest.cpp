#include "posix/LookPlan.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a few files that are in memory are looked at on one thread")
{
    CHECK(planLooks(0, false).threads == 1);
    CHECK(planLooks(1500, false).threads == 1);
}

TEST_CASE(
    "many files that are in memory are looked at on no more threads than there are processors")
{
    auto const plan = planLooks(1'000'000, false);
    CHECK(plan.threads == std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
    CHECK(plan.filesAtATime >= 1000);
}

TEST_CASE("files on a slow disk are looked at many at once, on no more threads than pay")
{
    CHECK(planLooks(0, true).threads == 1);
    CHECK(planLooks(20, true).threads == 5);
    CHECK(planLooks(300, true).threads == 16);
    CHECK(planLooks(300, true).filesAtATime < 300 / 16);
    CHECK(planLooks(1'000'000, true).threads == 16);
}
