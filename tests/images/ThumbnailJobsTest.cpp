#include "images/ThumbnailJobs.h"
#include <doctest/doctest.h>
#include <map>
#include <string>
#include <vector>

using namespace pixelhain;

using Step = ThumbnailJobs::Step;
using Wish = Turn::Wish;
using Names = std::vector<std::string>;

namespace {

/// Jobs with short names, done one after the other.
struct Jobs {
    ThumbnailJobs jobs;
    std::map<std::string, Turn> turns;
    Names done;
    std::size_t items = 0;

    std::shared_ptr<bool> add(std::string const& name, Step step, Turn::Place place)
    {
        auto const dropped = std::make_shared<bool>(false);
        turns[name].set(place);
        jobs.add({ dropped, turns[name], step, [dropped] { return *dropped; },
            [this, name] { done.push_back(name); } });
        return dropped;
    }

    std::shared_ptr<bool> expect(std::string const& name, Step step, Turn::Place place)
    {
        auto const asker = std::make_shared<bool>(false);
        turns[name].set(place);
        jobs.add({ asker, turns[name], step, [asker] { return *asker; }, nullptr });
        return asker;
    }

    void run()
    {
        for (items += jobs.claimItems(); items > 0; items += jobs.claimItems()) {
            --items;
            if (auto const job = jobs.start())
                job->run();
        }
    }
};

} // namespace

TEST_CASE("every file in view is looked into before a picture is decoded, those with previews next")
{
    Jobs j;
    j.add("slow 1", Step::slow, { Wish::load, 1 });
    j.add("look 4", Step::glance, { Wish::load, 4 });
    j.add("slow 0", Step::slow, { Wish::load, 0 });
    j.add("quick 3", Step::quick, { Wish::load, 3 });
    j.add("look 2", Step::glance, { Wish::load, 2 });
    j.run();
    CHECK(j.done == Names { "look 2", "look 4", "quick 3", "slow 0", "slow 1" });
}

TEST_CASE("what is about to come into view waits for all that is in view")
{
    Jobs j;
    j.add("look ahead", Step::glance, { Wish::loadAhead, 5 });
    j.add("quick ahead", Step::quick, { Wish::loadAhead, 0 });
    j.add("slow in view", Step::slow, { Wish::load, 9 });
    j.run();
    CHECK(j.done == Names { "slow in view", "look ahead", "quick ahead" });
}

TEST_CASE("what passes by is looked at and not decoded, what is gone at once not even that")
{
    Jobs j;
    j.add("look", Step::glance, { Wish::glance, 0 });
    j.add("quick", Step::quick, { Wish::glance, 0 });
    j.add("slow", Step::slow, { Wish::glance, 0 });
    j.add("gone", Step::glance, { Wish::nothing, 0 });
    j.run();
    CHECK(j.done == Names { "look" });
    CHECK(j.jobs.claimItems() == 0);
}

TEST_CASE("the order is that of the moment, not that in which was asked")
{
    Jobs j;
    j.add("a", Step::slow, { Wish::load, 0 });
    j.add("b", Step::slow, { Wish::load, 1 });
    j.add("c", Step::slow, { Wish::loadAhead, 2 });
    j.turns["a"].set({ Wish::loadAhead, 2 });
    j.turns["c"].set({ Wish::load, 0 });
    j.run();
    CHECK(j.done == Names { "c", "b", "a" });
}

TEST_CASE("what may begin again needs work items of its own")
{
    Jobs j;
    j.add("a", Step::slow, { Wish::nothing, 0 });
    j.run();
    CHECK(j.done.empty());
    CHECK(j.turns["a"].set({ Wish::load, 0 }));
    CHECK_FALSE(j.turns["a"].set({ Wish::load, 0 }));
    j.run();
    CHECK(j.done == Names { "a" });
}

TEST_CASE("jobs of the same turn are done in the order in which they came")
{
    Jobs j;
    for (auto const* name : { "a", "b", "c" })
        j.add(name, Step::slow, { Wish::load, 7 });
    j.run();
    CHECK(j.done == Names { "a", "b", "c" });
}

TEST_CASE("dropped jobs are forgotten, and their work items find nothing to do")
{
    Jobs j;
    auto const a = j.add("a", Step::slow, { Wish::load, 0 });
    j.add("b", Step::slow, { Wish::load, 1 });
    CHECK(j.jobs.claimItems() == 2);
    j.items = 2;
    *a = true;
    CHECK(a.use_count() > 1);
    j.run();
    CHECK(j.done == Names { "b" });
    CHECK(a.use_count() == 1);
}

TEST_CASE("no picture is decoded before it is known what should come before it")
{
    Jobs j;
    auto const expected = j.expect("look 2", Step::glance, { Wish::load, 2 });
    j.add("look 1", Step::glance, { Wish::load, 1 });
    j.add("look 3", Step::glance, { Wish::load, 3 });
    j.add("quick 0", Step::quick, { Wish::load, 0 });
    j.run();
    CHECK(j.done == Names { "look 1", "look 3" });
    SUBCASE("it comes")
    {
        j.jobs.add({ expected, j.turns["look 2"], Step::glance, [] { return false; },
            [&j] { j.done.emplace_back("look 2"); } });
        j.run();
        CHECK(j.done == Names { "look 1", "look 3", "look 2", "quick 0" });
    }
    SUBCASE("there is no need")
    {
        j.jobs.forget(expected);
        j.run();
        CHECK(j.done == Names { "look 1", "look 3", "quick 0" });
    }
    SUBCASE("it is dropped")
    {
        *expected = true;
        j.run();
        CHECK(j.done == Names { "look 1", "look 3", "quick 0" });
    }
    SUBCASE("it is put off")
    {
        j.turns["look 2"].set({ Wish::nothing, 0 });
        j.run();
        CHECK(j.done == Names { "look 1", "look 3", "quick 0" });
    }
}

TEST_CASE("what is expected ahead holds up nothing in view")
{
    Jobs j;
    j.expect("ahead", Step::glance, { Wish::loadAhead, 0 });
    j.add("slow", Step::slow, { Wish::load, 9 });
    j.add("slow ahead", Step::slow, { Wish::loadAhead, 0 });
    j.run();
    CHECK(j.done == Names { "slow" });
}

TEST_CASE("what has to wait holds up no look that may begin")
{
    Jobs j;
    j.expect("look 0", Step::glance, { Wish::load, 0 });
    j.add("slow", Step::slow, { Wish::load, 1 });
    j.add("look ahead", Step::glance, { Wish::loadAhead, 5 });
    j.run();
    CHECK(j.done == Names { "look ahead" });
    CHECK(j.jobs.claimItems() == 0);
}

TEST_CASE("a turn keeps the largest rank that it can tell")
{
    Turn const turn;
    turn.set({ Wish::loadAhead, 0xFFFFFFFF });
    CHECK(turn.place() == Turn::Place { Wish::loadAhead, (1U << 24) - 1 });
}
