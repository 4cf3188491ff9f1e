#include "cli/InOrder.h"
#include "cli/ConsoleLoop.h"
#include <algorithm>
#include <cstdint>
#include <doctest/doctest.h>
#include <string>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

/// Jobs that wait until the test, running on the same loop, ends one of them.
struct Jobs {
    ConsoleLoop loop;
    std::vector<std::pair<std::size_t, InOrder::Done>> open;
    std::size_t mostOpen = 0;
    std::size_t stopAfter = SIZE_MAX;
    std::vector<std::string> reported;
    InOrder run;

    Jobs(std::size_t count, std::size_t window)
    {
        run.count = count;
        run.window = window;
        run.start = [this](std::size_t job, InOrder::Done done) {
            open.emplace_back(job, std::move(done));
            mostOpen = std::max(mostOpen, open.size());
            return Task();
        };
        run.report = [this](std::size_t job, FileOutcome const& outcome) {
            reported.push_back(std::to_string(job) + outcome.text);
            return reported.size() < stopAfter;
        };
    }

    /// Ends the job that was started last, again and again.
    void endBackwards()
    {
        loop.post([this] {
            if (open.empty())
                return;
            auto const [job, done] = std::move(open.back());
            open.pop_back();
            done({ true, "!" });
            endBackwards();
        });
    }
};

} // namespace

TEST_CASE("jobs that end in any order are reported in order")
{
    Jobs jobs(5, 5);
    jobs.endBackwards();
    jobs.run.run(jobs.loop);
    CHECK(jobs.reported == std::vector<std::string> { "0!", "1!", "2!", "3!", "4!" });
}

TEST_CASE("no more jobs are started than fit the window, slow ones included")
{
    Jobs jobs(1000, 3);
    jobs.endBackwards();
    jobs.run.run(jobs.loop);
    CHECK(jobs.reported.size() == 1000);
    CHECK(jobs.mostOpen == 3);
}

TEST_CASE("a run ends early when there is no use in going on")
{
    Jobs jobs(1000, 3);
    jobs.stopAfter = 5;
    jobs.endBackwards();
    jobs.run.run(jobs.loop);
    CHECK(jobs.reported.size() == 5);
}

TEST_CASE("a run without jobs ends at once")
{
    Jobs jobs(0, 3);
    jobs.run.run(jobs.loop);
    CHECK(jobs.reported.empty());
}

TEST_CASE("the console's loop runs what other threads post, in their order")
{
    ConsoleLoop loop;
    std::vector<int> seen;
    std::jthread const poster([&] {
        for (int i = 0; i < 1000; ++i)
            loop.post([&seen, i] { seen.push_back(i); });
    });
    loop.runUntil([&] { return seen.size() == 1000; });
    CHECK(std::ranges::is_sorted(seen));
}

TEST_CASE("the console's timers run when due, the dropped ones never")
{
    using namespace std::chrono_literals;
    ConsoleLoop loop;
    std::vector<int> seen;
    auto const second = loop.after(2ms, [&] { seen.push_back(2); });
    auto const first = loop.after(1ms, [&] { seen.push_back(1); });
    auto dropped = loop.after(0ms, [&] { seen.push_back(0); });
    dropped.cancel();
    loop.runUntil([&] { return seen.size() == 2; });
    CHECK(seen == std::vector<int> { 1, 2 });
}
