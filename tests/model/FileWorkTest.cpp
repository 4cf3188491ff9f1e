#include "model/FileWork.h"
#include "support/FakeBackground.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

using Progress = std::optional<FileProgress>;

// Commands that note what they do and when.
struct Bench {
    FakeLoop loop;
    FakeBackground background;
    std::vector<std::string> log;
    std::vector<Progress> shown;
    std::function<void(FileRun&)> during;
    std::optional<FileWork> work;

    Bench()
    {
        work.emplace(background, loop, [this](Progress progress) { shown.push_back(progress); });
    }

    FileCommand command(std::string const& name, std::size_t total = 10)
    {
        auto const begin = [this, name, total](std::vector<FileUrl> const&) {
            log.push_back("begin " + name);
            auto const task = [this, name](FileRun& run) {
                log.push_back("work " + name);
                if (during)
                    during(run);
                return name;
            };
            work->run(
                total, task, [this](std::string const& done) { log.push_back("done " + done); });
        };
        return { {}, begin };
    }

    void settle()
    {
        do {
            background.finishAll();
            loop.settle();
        } while (background.pending() > 0);
    }
};

using Log = std::vector<std::string>;

} // namespace

TEST_CASE("one command after the other, each begun when the one before it is done")
{
    Bench bench;
    CHECK_FALSE(bench.work->isBusy());
    bench.work->give(bench.command("a"));
    bench.work->give(bench.command("b"));
    CHECK(bench.log == Log { "begin a" });
    CHECK(bench.work->isBusy());
    CHECK(bench.background.pending() == 1);
    bench.settle();
    CHECK(bench.log == Log { "begin a", "work a", "done a", "begin b", "work b", "done b" });
    CHECK_FALSE(bench.work->isBusy());
}

TEST_CASE("a command that has nothing to do holds nobody up")
{
    Bench bench;
    bench.work->give(bench.command("a"));
    bench.work->give({ {}, [&](auto const&) { bench.log.emplace_back("nothing"); } });
    bench.work->give(bench.command("b"));
    bench.settle();
    CHECK(bench.log
        == Log { "begin a", "work a", "done a", "nothing", "begin b", "work b", "done b" });
}

TEST_CASE("a command hears what is left of its targets when it begins")
{
    Bench bench;
    bench.work->give(bench.command("a"));
    std::vector<FileUrl> heard;
    bench.work->give({ { { FileUrl("/1"), FileUrl("/2") }, std::nullopt },
        [&](std::vector<FileUrl> photos) { heard = std::move(photos); } });
    for (auto& command : bench.work->waiting())
        command.targets.follow({ FileUrl("/1") }, [](auto const&) { return std::nullopt; });
    bench.settle();
    CHECK(heard == std::vector { FileUrl("/2") });
}

TEST_CASE("work of up to 200 ms shows no progress")
{
    Bench bench;
    bench.work->give(bench.command("a"));
    bench.loop.advance(199ms);
    CHECK(bench.shown.empty());
    bench.settle();
    bench.loop.advance(1s);
    CHECK(bench.shown == std::vector<Progress> { std::nullopt });
}

TEST_CASE("longer work shows how far it is, until it is done")
{
    Bench bench;
    bench.during = [&](FileRun& run) {
        run.handled = 3;
        bench.loop.advance(200ms);
        run.handled = 7;
        bench.loop.advance(99ms);
        bench.loop.advance(1ms);
    };
    bench.work->give(bench.command("a"));
    bench.settle();
    CHECK(bench.shown
        == std::vector<Progress> { FileProgress { 3, 10 }, FileProgress { 7, 10 }, std::nullopt });
    bench.loop.advance(10s);
    CHECK(bench.shown.size() == 3);
}

TEST_CASE("each command has 200 ms of its own")
{
    Bench bench;
    bench.during = [&](FileRun&) { bench.loop.advance(150ms); };
    bench.work->give(bench.command("a"));
    bench.work->give(bench.command("b"));
    bench.settle();
    CHECK(bench.shown == std::vector<Progress> { std::nullopt, std::nullopt });
}

TEST_CASE("cancelling reaches the work and forgets what waits; its result still arrives")
{
    Bench bench;
    bool cancelled = false;
    bench.during = [&](FileRun& run) { cancelled = run.cancel.isSet(); };
    bench.work->give(bench.command("a"));
    bench.work->give(bench.command("b"));
    bench.work->cancel();
    CHECK(bench.work->isBusy());
    bench.settle();
    CHECK(cancelled);
    CHECK(bench.log == Log { "begin a", "work a", "done a" });
    bench.work->give(bench.command("c"));
    bench.settle();
    CHECK_FALSE(cancelled);
    CHECK(bench.log.back() == "done c");
}

TEST_CASE("who waits for the end hears when the file under way is done")
{
    Bench bench;
    bench.work->give(bench.command("a"));
    bench.work->give(bench.command("b"));
    bench.work->stopThen([&] { bench.log.emplace_back("stopped"); });
    CHECK(bench.log == Log { "begin a" });
    bench.settle();
    CHECK(bench.log == Log { "begin a", "work a", "done a", "stopped" });
}

TEST_CASE("with nothing under way the end is there at once")
{
    Bench bench;
    bench.work->stopThen([&] { bench.log.emplace_back("stopped"); });
    CHECK(bench.log == Log { "stopped" });
    bench.work->give(bench.command("a"));
    bench.settle();
    CHECK(bench.log == Log { "stopped", "begin a", "work a", "done a" });
}

TEST_CASE("who waited for the end may take everything down")
{
    Bench bench;
    bench.work->give(bench.command("a"));
    bench.work->stopThen([&] { bench.work.reset(); });
    bench.settle();
    CHECK_FALSE(bench.work.has_value());
    CHECK(bench.log == Log { "begin a", "work a", "done a" });
}

TEST_CASE("work that has not begun when everything goes never begins")
{
    Bench bench;
    bench.work->give(bench.command("a"));
    bench.work.reset();
    bench.settle();
    CHECK(bench.log == Log { "begin a" });
}

TEST_CASE("work under way when everything goes is cancelled, and nobody hears of its end")
{
    Bench bench;
    bool cancelled = false;
    bench.during = [&](FileRun& run) {
        bench.work.reset();
        cancelled = run.cancel.isSet();
    };
    bench.work->give(bench.command("a"));
    bench.settle();
    bench.loop.advance(1s);
    CHECK(cancelled);
    CHECK(bench.log == Log { "begin a", "work a" });
    CHECK(bench.shown.empty());
}

TEST_CASE("photos may be taken away by what is under way or waits")
{
    Bench bench;
    CHECK_FALSE(bench.work->takesPhotosAway());
    auto taking = bench.command("a");
    taking.takesPhotosAway = true;
    bench.work->give(bench.command("copy"));
    CHECK_FALSE(bench.work->takesPhotosAway());
    bench.work->give(taking);
    CHECK(bench.work->takesPhotosAway());
    bench.background.finish(0);
    bench.loop.settle();
    CHECK(bench.work->takesPhotosAway());
    bench.settle();
    CHECK_FALSE(bench.work->takesPhotosAway());
}
