#include "base/Published.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

class Counter final : public Observable {
public:
    explicit Counter(MainLoop& loop)
        : Observable([&loop](std::function<void()> work) { loop.post(std::move(work)); })
    {
    }
    Published<int, Counter> value { *this, 0 };
    void add()
    {
        value = value + 1;
        value = value + 1;
    }
    void keep() { value = value.get(); }
};

} // namespace

TEST_CASE("observers hear once per turn however many fields changed")
{
    FakeLoop loop;
    Counter counter(loop);
    int heard = 0;
    auto const observation = counter.observe([&] { ++heard; });
    counter.add();
    CHECK(heard == 0);
    loop.settle();
    CHECK(heard == 1);
    CHECK(counter.value == 2);
}

TEST_CASE("writing the same value tells nobody")
{
    FakeLoop loop;
    Counter counter(loop);
    int heard = 0;
    auto const observation = counter.observe([&] { ++heard; });
    counter.keep();
    loop.settle();
    CHECK(heard == 0);
}

TEST_CASE("a dropped observation hears nothing more")
{
    FakeLoop loop;
    Counter counter(loop);
    int heard = 0;
    auto observation = counter.observe([&] { ++heard; });
    counter.add();
    observation.cancel();
    loop.settle();
    CHECK(heard == 0);
}

TEST_CASE("an observer may drop another one while it is told")
{
    FakeLoop loop;
    Counter counter(loop);
    int heard = 0;
    Observation second;
    auto const first = counter.observe([&] { second.cancel(); });
    second = counter.observe([&] { ++heard; });
    counter.add();
    loop.settle();
    CHECK(heard == 0);
}

TEST_CASE("a change told after its owner is gone does no harm")
{
    FakeLoop loop;
    int heard = 0;
    Observation observation;
    {
        Counter counter(loop);
        observation = counter.observe([&] { ++heard; });
        counter.add();
    }
    loop.settle();
    CHECK(heard == 0);
}
