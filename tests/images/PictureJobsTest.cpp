#include "images/PictureJobs.h"
#include <doctest/doctest.h>
#include <initializer_list>
#include <string>

using namespace pixelhain;

namespace {

constexpr int pixels = 2880;
using Paths = std::vector<std::string>;

/// Jobs for pictures with short names, and what was started of them.
struct Desk {
    PictureJobs jobs;
    std::vector<std::size_t> running {}; ///< numbers in the order of their start

    explicit Desk(PictureJobs::Widths widths = { .queue = 3, .prefetch = 2 })
        : jobs(widths)
    {
    }

    /// Waits for a picture; it is given up by setting what comes back.
    std::shared_ptr<bool> ask(char const* name, PictureSize size = PictureSize::display)
    {
        auto const dropped = std::make_shared<bool>(false);
        jobs.ask(FileUrl(name), size, pixels,
            { [dropped] { return *dropped; }, [](PictureJobs::ImageRef const&) {} });
        return dropped;
    }

    void want(char const* shown, std::initializer_list<char const*> next)
    {
        std::vector<FileUrl> urls;
        for (auto const* name : next)
            urls.emplace_back(name);
        jobs.want(shown ? std::optional(FileUrl(shown)) : std::nullopt, urls, pixels);
    }

    /// Starts as many items as are claimed now, without ending any.
    Paths startClaimed()
    {
        Paths started;
        for (auto count = jobs.claimItems(); count > 0; --count)
            if (auto const job = jobs.start(pixels)) {
                started.emplace_back(job->url.path());
                running.push_back(job->number);
            }
        return started;
    }

    std::size_t finishFirst()
    {
        auto const waiters = jobs.finish(running.front());
        running.erase(running.begin());
        return waiters.size();
    }

    /// Runs everything, one item after the other, in the order in which it comes.
    Paths runAll()
    {
        Paths order;
        for (std::size_t items = jobs.claimItems(); items > 0; items += jobs.claimItems()) {
            --items;
            if (auto const job = jobs.start(pixels)) {
                order.emplace_back(job->url.path());
                (void)jobs.finish(job->number);
            }
        }
        return order;
    }
};

} // namespace

TEST_CASE("the picture shown comes first, then its neighbours in their order")
{
    Desk desk;
    desk.want("/4", { "/5", "/6", "/3" });
    CHECK(desk.runAll() == Paths { "/4", "/5", "/6", "/3" });
    CHECK(desk.runAll().empty());
}

TEST_CASE("nothing is prefetched while a picture that is waited for has not begun")
{
    Desk desk;
    desk.want("/4", { "/5" });
    CHECK(desk.jobs.claimItems() == 1);
    CHECK(desk.jobs.start(pixels)->url.path() == "/4");
}

TEST_CASE("a neighbour is decoded beside the picture that is waited for")
{
    Desk desk;
    (void)desk.ask("/4");
    desk.want("/4", { "/5", "/6", "/3" });
    CHECK(desk.startClaimed() == Paths { "/4" });
    CHECK(desk.startClaimed() == Paths { "/5" });
    CHECK(desk.startClaimed().empty());
    CHECK(desk.finishFirst() == 1);
    CHECK(desk.startClaimed() == Paths { "/6" });
    CHECK(desk.startClaimed().empty());
}

TEST_CASE("prefetches leave one item of the queue for the picture that is asked for next")
{
    Desk desk;
    auto const passed = desk.ask("/1");
    desk.want("/1", { "/2", "/3" });
    (void)desk.startClaimed();
    CHECK(desk.startClaimed() == Paths { "/2" });
    *passed = true;
    desk.want("/8", { "/9" });
    CHECK(desk.startClaimed() == Paths { "/8" });
    CHECK(desk.running.size() == 3);
    CHECK(desk.startClaimed().empty());
}

TEST_CASE("where one neighbour is decoded at a time, none is beside two that are waited for")
{
    Desk desk({ .queue = 3, .prefetch = 1 });
    std::vector<std::shared_ptr<bool>> const held { desk.ask("/1"), desk.ask("/2") };
    desk.want(nullptr, { "/5", "/6" });
    CHECK(desk.startClaimed() == Paths { "/2", "/1" });
    CHECK(desk.startClaimed().empty());
    CHECK(desk.finishFirst() == 1);
    CHECK(desk.startClaimed() == Paths { "/5" });
    CHECK(desk.finishFirst() == 1);
    CHECK(desk.startClaimed().empty());
    CHECK(desk.finishFirst() == 0);
    CHECK(desk.startClaimed() == Paths { "/6" });
}

TEST_CASE("as many neighbours as allowed are decoded side by side")
{
    Desk desk;
    desk.want(nullptr, { "/5", "/6", "/3" });
    CHECK(desk.startClaimed() == Paths { "/5", "/6" });
    CHECK(desk.startClaimed().empty());
    (void)desk.finishFirst();
    CHECK(desk.startClaimed() == Paths { "/3" });
}

TEST_CASE("a picture that is waited for starts beside prefetches that run")
{
    Desk desk;
    desk.want(nullptr, { "/5", "/6", "/3" });
    (void)desk.startClaimed();
    (void)desk.ask("/9");
    CHECK(desk.startClaimed() == Paths { "/9" });
}

TEST_CASE("the newest picture that is waited for comes first")
{
    Desk desk;
    std::vector<std::shared_ptr<bool>> const held { desk.ask("/1"), desk.ask("/2"), desk.ask("/3"),
        desk.ask("/1") };
    CHECK(desk.runAll() == Paths { "/1", "/3", "/2" });
}

TEST_CASE("who asks for a picture that is queued or decoded gets that one's")
{
    Desk desk;
    (void)desk.ask("/1");
    (void)desk.ask("/1");
    CHECK(desk.startClaimed() == Paths { "/1" });
    (void)desk.ask("/1");
    CHECK(desk.startClaimed().empty());
    CHECK(desk.finishFirst() == 3);
    CHECK(desk.startClaimed().empty());
}

TEST_CASE("who asks for a picture that is being prefetched gets that one's")
{
    Desk desk;
    desk.want(nullptr, { "/1", "/2", "/3" });
    (void)desk.startClaimed();
    (void)desk.ask("/1");
    CHECK(desk.startClaimed().empty());
    CHECK(desk.finishFirst() == 1);
}

TEST_CASE("a full picture and one for the screen are not the same")
{
    Desk desk;
    (void)desk.ask("/1", PictureSize::full);
    (void)desk.ask("/1", PictureSize::display);
    (void)desk.ask("/1", PictureSize::full);
    CHECK(desk.startClaimed() == Paths { "/1", "/1" });
    CHECK(desk.finishFirst() == 2);
    CHECK(desk.finishFirst() == 1);
}

TEST_CASE("a picture for another screen is not the one being decoded")
{
    Desk desk;
    (void)desk.ask("/1");
    (void)desk.startClaimed();
    desk.jobs.ask(FileUrl("/1"), PictureSize::display, 3840,
        { [] { return false; }, [](PictureJobs::ImageRef const&) {} });
    CHECK(desk.startClaimed() == Paths { "/1" });
    CHECK(desk.finishFirst() == 1);
    CHECK(desk.finishFirst() == 1);
}

TEST_CASE("what nobody waits for any more is never started")
{
    Desk desk;
    auto const first = desk.ask("/1");
    auto const second = desk.ask("/1");
    *first = true;
    SUBCASE("as long as somebody still waits it is")
    {
        CHECK(desk.runAll() == Paths { "/1" });
    }
    SUBCASE("all have gone")
    {
        *second = true;
        CHECK(desk.runAll().empty());
    }
}

TEST_CASE("an item that was claimed for nothing serves the next job")
{
    Desk desk;
    *desk.ask("/1") = true;
    CHECK(desk.jobs.claimItems() == 0);
    auto const dropped = desk.ask("/2");
    CHECK(desk.jobs.claimItems() == 1);
    *dropped = true;
    (void)desk.ask("/3");
    CHECK(desk.jobs.claimItems() == 0);
    CHECK(desk.jobs.start(pixels)->url.path() == "/3");
}

TEST_CASE("a later wish replaces what had not begun")
{
    Desk desk;
    desk.want("/4", { "/5", "/6", "/3" });
    desk.want("/5", { "/6", "/7", "/4" });
    CHECK(desk.runAll() == Paths { "/5", "/6", "/7", "/4" });
    desk.want("/1", { "/2" });
    desk.want(nullptr, {});
    CHECK(desk.runAll().empty());
}

TEST_CASE("what is waited for outlives later wishes")
{
    Desk desk;
    auto const held = desk.ask("/1");
    desk.want("/5", { "/6" });
    CHECK(desk.runAll() == Paths { "/5", "/1", "/6" });
}

TEST_CASE("what was passed by while it is decoded takes the place of a prefetch")
{
    Desk desk;
    auto const passed = desk.ask("/1");
    CHECK(desk.startClaimed() == Paths { "/1" });
    *passed = true;
    desk.want(nullptr, { "/5", "/6" });
    CHECK(desk.startClaimed() == Paths { "/5" });
    (void)desk.finishFirst();
    CHECK(desk.startClaimed() == Paths { "/6" });
}

TEST_CASE("going through a thousand photos without end leaves one step's work")
{
    Desk desk;
    std::shared_ptr<bool> shown;
    std::size_t items = 0;
    for (int i = 0; i < 1'000; ++i) {
        if (shown)
            *shown = true;
        auto const name = [&](int offset) { return "/" + std::to_string(1'000 + i + offset); };
        desk.want(name(0).c_str(), { name(1).c_str(), name(2).c_str(), name(-1).c_str() });
        shown = desk.ask(name(0).c_str());
        items += desk.jobs.claimItems();
    }
    CHECK(items == 1);
    Paths order;
    while (items-- > 0) {
        auto const job = desk.jobs.start(pixels);
        REQUIRE(job);
        order.emplace_back(job->url.path());
        (void)desk.jobs.finish(job->number);
        items += desk.jobs.claimItems();
    }
    CHECK(order == Paths { "/1999", "/2000", "/2001", "/1998" });
}

TEST_CASE("in a hurry one picture is decoded at a time, and none once one was left behind")
{
    Desk desk;
    desk.jobs.hurry(true);
    desk.want("/1", { "/2", "/3" });
    CHECK(desk.startClaimed() == Paths { "/1" });
    CHECK(desk.startClaimed().empty());
    (void)desk.finishFirst();
    CHECK(desk.startClaimed() == Paths { "/2" });
    desk.want("/3", { "/4", "/5", "/2" });
    CHECK(desk.startClaimed().empty());
    desk.want("/4", { "/5", "/6", "/3" });
    (void)desk.finishFirst();
    auto const task = desk.ask("/4");
    CHECK(desk.startClaimed().empty());
    desk.want("/5", { "/6" });
    CHECK(desk.startClaimed().empty());
    desk.jobs.hurry(false);
    CHECK(desk.startClaimed() == Paths { "/5", "/4" });
}

TEST_CASE("an item that was claimed before a hurry begins nothing in it")
{
    Desk desk;
    auto const task = desk.ask("/1");
    REQUIRE(desk.startClaimed() == Paths { "/1" });
    *task = true;
    desk.want("/2", {});
    REQUIRE(desk.jobs.claimItems() == 1);
    desk.jobs.hurry(true);
    desk.want("/3", {});
    CHECK_FALSE(desk.jobs.start(pixels));
    CHECK(desk.jobs.claimItems() == 0);
    desk.jobs.hurry(false);
    CHECK(desk.startClaimed() == Paths { "/3" });
}

TEST_CASE("what is shown when a hurry ends is decoded alone, what is shown next is not")
{
    PictureJobs::Widths widths { .queue = 3, .prefetch = 1 };
    SUBCASE("on a few processors") { }
    SUBCASE("on many")
    {
        widths.prefetch = 2;
    }
    Desk desk(widths);
    desk.jobs.hurry(true);
    desk.want("/1", {});
    CHECK(desk.startClaimed() == Paths { "/1" });
    desk.want("/5", { "/6" });
    (void)desk.finishFirst();
    desk.jobs.hurry(false);
    CHECK(desk.startClaimed() == Paths { "/5" });
    CHECK(desk.startClaimed().empty());
    (void)desk.finishFirst();
    CHECK(desk.startClaimed() == Paths { "/6" });
    (void)desk.finishFirst();
    desk.want("/8", { "/9" });
    CHECK(desk.startClaimed() == Paths { "/8" });
    CHECK(desk.startClaimed() == Paths { "/9" });
}

TEST_CASE("ending a job twice, or one that never was, tells nobody")
{
    Desk desk;
    (void)desk.ask("/1");
    (void)desk.startClaimed();
    auto const number = desk.running.front();
    CHECK(desk.jobs.finish(number).size() == 1);
    CHECK(desk.jobs.finish(number).empty());
    CHECK(desk.jobs.finish(number + 1).empty());
}
