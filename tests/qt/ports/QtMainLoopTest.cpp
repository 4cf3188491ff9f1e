#include "qt/ports/QtMainLoop.h"
#include "qt/Wait.h"
#include <QCoreApplication>
#include <algorithm>
#include <doctest/doctest.h>
#include <memory>
#include <thread>
#include <vector>

using namespace pixelhain;
using namespace std::chrono_literals;

TEST_CASE("posted work runs on the main thread in the order of posting")
{
    QtMainLoop loop;
    std::vector<int> order;
    auto const main = std::this_thread::get_id();
    bool onMain = true;
    std::thread poster([&] {
        for (int i = 0; i < 100; ++i)
            loop.post([&, i] {
                order.push_back(i);
                onMain = onMain && std::this_thread::get_id() == main;
            });
    });
    poster.join();
    CHECK(order.empty());
    REQUIRE(eventually([&] { return order.size() == 100; }));
    CHECK(std::ranges::is_sorted(order));
    CHECK(onMain);
}

TEST_CASE("work posted by posted work runs after what was posted before")
{
    QtMainLoop loop;
    std::vector<int> order;
    loop.post([&] {
        order.push_back(1);
        loop.post([&] { order.push_back(3); });
    });
    loop.post([&] { order.push_back(2); });
    REQUIRE(eventually([&] { return order.size() == 3; }));
    CHECK(order == std::vector { 1, 2, 3 });
}

TEST_CASE("a flood of posted work lets other events through")
{
    QtMainLoop loop;
    bool isFlooding = true;
    std::function<void()> flood = [&] {
        if (isFlooding)
            loop.post(flood);
    };
    flood();
    QObject receiver;
    bool input = false;
    QMetaObject::invokeMethod(
        &receiver, [&] { input = true; }, Qt::QueuedConnection);
    REQUIRE(eventually([&] { return input; }));
    // The flood goes on, and later events still get their turn.
    input = false;
    QMetaObject::invokeMethod(
        &receiver, [&] { input = true; }, Qt::QueuedConnection);
    CHECK(eventually([&] { return input; }));
    isFlooding = false;
    bool drained = false;
    loop.post([&] { drained = true; });
    CHECK(eventually([&] { return drained; }));
}

TEST_CASE("delayed work runs once")
{
    QtMainLoop loop;
    int runs = 0;
    auto const task = loop.after(1ms, [&] { ++runs; });
    bool later = false;
    auto const second = loop.after(20ms, [&] { later = true; });
    REQUIRE(eventually([&] { return later; }));
    CHECK(runs == 1);
}

TEST_CASE("delayed work whose task was dropped never runs")
{
    QtMainLoop loop;
    bool ran = false;
    bool later = false;
    {
        auto const task = loop.after(1ms, [&] { ran = true; });
    }
    auto const second = loop.after(5ms, [&] { later = true; });
    REQUIRE(eventually([&] { return later; }));
    CHECK_FALSE(ran);
}

TEST_CASE("dropping a task frees what its work holds")
{
    QtMainLoop loop;
    auto const held = std::make_shared<int>(1);
    auto task = loop.after(1h, [held] {});
    CHECK(held.use_count() == 2);
    task.cancel();
    CHECK(held.use_count() == 1);
}

TEST_CASE("delayed work may replace its own task")
{
    QtMainLoop loop;
    Task task;
    int runs = 0;
    task = loop.after(1ms, [&] {
        ++runs;
        task = loop.after(1ms, [&] { ++runs; });
    });
    CHECK(eventually([&] { return runs == 2; }));
}
