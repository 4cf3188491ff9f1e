#include "images/MemoryCache.h"
#include <atomic>
#include <doctest/doctest.h>
#include <string>
#include <thread>
#include <vector>

using pixelhain::CacheLimits;
using pixelhain::MemoryCache;

namespace {

using Cache = MemoryCache<std::string, int>;

Cache::Ref number(int value)
{
    return std::make_shared<int const>(value);
}

} // namespace

TEST_CASE("a cache yields what was stored, and nothing for other keys")
{
    Cache cache;
    cache.store("a", number(1));
    REQUIRE(cache.find("a"));
    CHECK(*cache.find("a") == 1);
    CHECK(cache.find("b") == nullptr);
}

TEST_CASE("a cache without limits keeps everything")
{
    Cache cache;
    for (int i = 0; i < 10'000; ++i)
        cache.store(std::to_string(i), number(i), 1'000'000'000);
    CHECK(cache.count() == 10'000);
    CHECK(*cache.find("0") == 0);
}

TEST_CASE("the least recently used entries go when the cost limit is passed")
{
    Cache cache({ 100, std::nullopt });
    cache.store("a", number(1), 40);
    cache.store("b", number(2), 40);
    CHECK(cache.find("a"));
    cache.store("c", number(3), 40);
    CHECK(cache.find("a"));
    CHECK(cache.find("b") == nullptr);
    CHECK(cache.find("c"));
    CHECK(cache.cost() == 80);
}

TEST_CASE("a cost limit may be reached exactly")
{
    Cache cache({ 100, std::nullopt });
    cache.store("a", number(1), 60);
    cache.store("b", number(2), 40);
    CHECK(cache.count() == 2);
    cache.store("c", number(3), 1);
    CHECK(cache.find("a") == nullptr);
    CHECK(cache.cost() == 41);
}

TEST_CASE("a count limit holds however little the entries cost")
{
    Cache cache({ std::nullopt, 2 });
    cache.store("a", number(1));
    cache.store("b", number(2));
    cache.store("c", number(3));
    CHECK(cache.count() == 2);
    CHECK(cache.find("a") == nullptr);
}

TEST_CASE("an entry dearer than the whole limit is not kept and displaces nothing else")
{
    Cache cache({ 100, std::nullopt });
    cache.store("a", number(1), 50);
    cache.store("b", number(2), 101);
    CHECK(cache.find("a"));
    CHECK(cache.find("b") == nullptr);
    cache.store("a", number(3), 101);
    CHECK(cache.find("a") == nullptr);
    CHECK(cache.cost() == 0);
}

TEST_CASE("replacing an entry adjusts the cost")
{
    Cache cache({ 100, std::nullopt });
    cache.store("a", number(1), 80);
    cache.store("a", number(2), 30);
    CHECK(cache.cost() == 30);
    CHECK(cache.count() == 1);
    CHECK(*cache.find("a") == 2);
}

TEST_CASE("a value that was dropped lives on with its holder")
{
    Cache cache({ std::nullopt, 1 });
    cache.store("a", number(1));
    auto const held = cache.find("a");
    cache.store("b", number(2));
    CHECK(cache.find("a") == nullptr);
    CHECK(*held == 1);
}

TEST_CASE("many threads share one cache without passing its limits")
{
    Cache cache({ 500, 40 });
    std::atomic<int> wrong = 0;
    auto const hammer = [&](int seed) {
        for (int i = 0; i < 5'000; ++i) {
            int const key = (i * 7 + seed * 13) % 100;
            if (auto const found = cache.find(std::to_string(key)); found && *found != key)
                ++wrong;
            cache.store(std::to_string(key), number(key), static_cast<std::size_t>(key % 30));
            if (cache.cost() > 500 || cache.count() > 40)
                ++wrong;
        }
    };
    std::vector<std::thread> threads;
    for (int seed = 0; seed < 4; ++seed)
        threads.emplace_back(hammer, seed);
    for (auto& thread : threads)
        thread.join();
    CHECK(wrong == 0);
}
