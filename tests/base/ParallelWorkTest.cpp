#include "base/ParallelWork.h"
#include <atomic>
#include <doctest/doctest.h>
#include <mutex>
#include <set>
#include <thread>

using namespace pixelhain;

TEST_CASE("work on several threads has ended on all of them when it is over")
{
    std::atomic<int> next = 0;
    std::atomic<int> done = 0;
    runOnThreads(4, [&] {
        while (next.fetch_add(1) < 1000)
            ++done;
    });
    CHECK(done == 1000);
}

TEST_CASE("work on one thread stays on the calling one")
{
    for (std::size_t const threads : { std::size_t { 0 }, std::size_t { 1 } }) {
        std::mutex lock;
        std::multiset<std::thread::id> seen;
        runOnThreads(threads, [&] {
            std::scoped_lock const hold(lock);
            seen.insert(std::this_thread::get_id());
        });
        CHECK(seen == std::multiset { std::this_thread::get_id() });
    }
}

TEST_CASE("there are never more threads than pieces, processors or what is wanted, and always one")
{
    CHECK(threadsFor(0, 4) == 1);
    CHECK(threadsFor(1, 4) == 1);
    CHECK(threadsFor(1000, 1) == 1);
    CHECK(threadsFor(1000, 0) == 1);
    CHECK(threadsFor(1000, 1000) == std::max(1U, std::thread::hardware_concurrency()));
}
