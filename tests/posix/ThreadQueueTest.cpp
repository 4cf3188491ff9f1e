#include "posix/ThreadQueue.h"
#include "posix/ThreadPool.h"
#include <algorithm>
#include <atomic>
#include <barrier>
#include <doctest/doctest.h>
#include <future>
#include <latch>
#include <memory>
#include <semaphore>
#include <sys/resource.h>
#include <vector>

using namespace pixelhain;

namespace {

int nicenessOfThisThread()
{
    return ::getpriority(PRIO_PROCESS, 0);
}

} // namespace

TEST_CASE("items start in the order in which they were added")
{
    std::vector<int> order;
    {
        ThreadQueue queue(1);
        std::latch done(100);
        for (int i = 0; i < 100; ++i)
            queue.add([&, i] {
                order.push_back(i);
                done.count_down();
            });
        done.wait();
    }
    CHECK(order.size() == 100);
    CHECK(std::ranges::is_sorted(order));
}

TEST_CASE("as many items run side by side as the queue is wide, and never more")
{
    constexpr int width = 3;
    constexpr int count = 30;
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::barrier<> together(width);
    std::latch done(count);
    ThreadQueue queue(width);
    for (int i = 0; i < count; ++i)
        queue.add([&] {
            int const now = ++running;
            for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) { }
            together.arrive_and_wait();
            --running;
            done.count_down();
        });
    done.wait();
    CHECK(most == width);
}

TEST_CASE("a width of none is one")
{
    ThreadQueue queue(0);
    std::latch done(1);
    queue.add([&] { done.count_down(); });
    done.wait();
    CHECK(done.try_wait());
}

TEST_CASE("a queue that goes waits for what runs and drops what has not begun")
{
    std::binary_semaphore started(0);
    std::binary_semaphore dropped(0);
    std::atomic<int> ran = 0;
    bool ended = false;
    {
        ThreadQueue queue(1);
        queue.add([&] {
            started.release();
            dropped.acquire();
            ended = true;
        });
        started.acquire();
        std::shared_ptr<void> const token(nullptr, [&](void*) { dropped.release(); });
        for (int i = 0; i < 10; ++i)
            queue.add([&ran, held = token] { ++ran; });
    }
    CHECK(ended);
    CHECK(ran == 0);
}

TEST_CASE("an item may add items")
{
    ThreadQueue queue(2);
    std::latch done(3);
    queue.add([&] {
        for (int i = 0; i < 3; ++i)
            queue.add([&] { done.count_down(); });
    });
    done.wait();
    CHECK(done.try_wait());
}

TEST_CASE("what an item held is gone before the next item of its thread starts")
{
    auto const held = std::make_shared<int>(1);
    std::promise<long> uses;
    ThreadQueue queue(1);
    queue.add([keep = held] { static_cast<void>(keep); });
    queue.add([&uses, weak = std::weak_ptr(held)] { uses.set_value(weak.use_count()); });
    CHECK(uses.get_future().get() == 1);
}

TEST_CASE("many threads may add at once and no item is lost")
{
    std::atomic<int> ran = 0;
    std::latch done(4000);
    ThreadQueue queue(4);
    std::vector<std::jthread> adders;
    for (int t = 0; t < 4; ++t)
        adders.emplace_back([&] {
            for (int i = 0; i < 1000; ++i)
                queue.add([&] {
                    ++ran;
                    done.count_down();
                });
        });
    done.wait();
    CHECK(ran == 4000);
}

TEST_CASE("a queue that never had work goes at once")
{
    ThreadQueue const queue(4);
}

TEST_CASE("the threads of a nice queue take a smaller share of the processors")
{
    std::promise<int> niceness;
    ThreadQueue queue(1, 5);
    queue.add([&] { niceness.set_value(nicenessOfThisThread()); });
    CHECK(niceness.get_future().get() == std::min(nicenessOfThisThread() + 5, 19));
}

TEST_CASE("background work runs off the caller's thread, utility work with a smaller share")
{
    ThreadPool pool;
    auto const nicenessAt = [&](Priority priority) {
        std::promise<int> niceness;
        pool.run(priority, [&, caller = std::this_thread::get_id()] {
            CHECK(std::this_thread::get_id() != caller);
            niceness.set_value(nicenessOfThisThread());
        });
        return niceness.get_future().get();
    };
    auto const usual = nicenessOfThisThread();
    CHECK(nicenessAt(Priority::userInteractive) == usual);
    CHECK(nicenessAt(Priority::userInitiated) == usual);
    if (usual < 19)
        CHECK(nicenessAt(Priority::utility) > usual);
}

TEST_CASE("waiting utility work never holds up work of a higher priority")
{
    std::counting_semaphore<> gate(0);
    std::latch high(2);
    ThreadPool pool;
    constexpr int many = 100;
    for (int i = 0; i < many; ++i)
        pool.run(Priority::utility, [&] { gate.acquire(); });
    pool.run(Priority::userInitiated, [&] { high.count_down(); });
    pool.run(Priority::userInteractive, [&] { high.count_down(); });
    high.wait();
    gate.release(many);
    CHECK(high.try_wait());
}
