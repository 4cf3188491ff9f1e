#include "posix/SystemRandom.h"
#include <doctest/doctest.h>
#include <set>

using namespace pixelhain;

TEST_CASE("random numbers do not repeat, and every bit is sometimes set")
{
    SystemRandom random;
    SystemRandom other;
    std::set<std::uint64_t> seen;
    std::uint64_t everSet = 0;
    std::uint64_t alwaysSet = ~std::uint64_t { 0 };
    constexpr std::size_t count = 1'000;
    for (std::size_t i = 0; i < count; ++i)
        for (auto const number : { random.next(), other.next() }) {
            seen.insert(number);
            everSet |= number;
            alwaysSet &= number;
        }
    CHECK(seen.size() == 2 * count);
    CHECK(everSet == ~std::uint64_t { 0 });
    CHECK(alwaysSet == 0);
}
