// How long the main thread is held up, and how long somebody waits for the photos, at each key that
// is typed into the search field over a folder of many photos.
#include "icu/IcuTextOrder.h"
#include "model/BrowserModel.h"
#include "ports/FileSystem.h"
#include "posix/ThreadPool.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileOperations.h"
#include "support/FakeFileSystem.h"
#include "support/FakeImageTypes.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakePreferences.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include "support/FakeWorkspace.h"
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

using namespace pixelhain;

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// One folder of four series, as cameras and people name photos.
class ManyPhotos final : public FileSystem {
public:
    explicit ManyPhotos(std::size_t count)
        : count_(count)
    {
    }
    bool list(FileUrl const&, EntryVisitor const& visit) const override
    {
        for (std::size_t i = 0; i < count_; ++i) {
            auto const number = std::to_string(i * 7919 % count_);
            std::string const names[] = { "IMG_" + number + ".jpg", "DSC" + number + ".JPG",
                "Ausflug nach K\xC3\xB6ln (" + number + ").jpeg", "2026-07-14 " + number + ".jpg" };
            visit(names[i % 4], EntryKind::file);
        }
        return true;
    }
    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> files) const override
    {
        return std::vector<std::optional<FileDetails>>(
            files.size(), FileDetails { EntryKind::file, {}, 1 });
    }
    bool isFolder(FileUrl const& url) const override { return url == FileUrl("/photos"); }
    bool exists(FileUrl const&) const override { return true; }

private:
    std::size_t count_;
};

// The main thread, which notes how long each piece of its work took.
class TimedLoop final : public MainLoop {
public:
    void post(Work work) override
    {
        std::scoped_lock const guard(lock_);
        work_.push_back(std::move(work));
        came_.notify_all();
    }
    Task after(std::chrono::milliseconds, Work) override { return {}; }

    void timed(Work const& work)
    {
        auto const begun = Clock::now();
        work();
        longest = std::max(longest, Milliseconds(Clock::now() - begun).count());
    }

    // Works on until nothing is under way anywhere.
    void runUntilIdle(std::atomic<int> const& underWay)
    {
        for (;;) {
            std::unique_lock guard(lock_);
            came_.wait_for(guard, std::chrono::milliseconds(1), [this] { return !work_.empty(); });
            if (work_.empty()) {
                if (underWay == 0)
                    return;
                continue;
            }
            auto const work = std::move(work_.front());
            work_.pop_front();
            guard.unlock();
            timed(work);
        }
    }

    double longest = 0;

private:
    std::mutex lock_;
    std::condition_variable came_;
    std::deque<Work> work_;
};

class CountedBackground final : public Background {
public:
    void run(Priority priority, std::function<void()> work) override
    {
        ++underWay;
        pool_.run(priority, [this, work = std::move(work)]() mutable {
            work();
            work = nullptr;
            --underWay;
        });
    }
    std::atomic<int> underWay = 0;

private:
    ThreadPool pool_;
};

struct World {
    explicit World(std::size_t count)
        : files(count)
    {
    }

    TimedLoop loop;
    ManyPhotos files;
    FakeFileSystem elsewhere;
    FakePreferences preferences;
    IcuTextOrder textOrder { "de_DE" };
    FakeImageTypes imageTypes;
    FakePanels panels;
    FakeFileOperations operations { elsewhere };
    FakeClipboard clipboard;
    FakeWorkspace workspace;
    FakePicturePrefetch prefetch;
    FakeScreenAwake screenAwake;
    FakeRandomSource random;
    BrowserModel* model = nullptr;
    CountedBackground background;

    void settle() { loop.runUntilIdle(background.underWay); }

    // Types a text, waits for what it shows, and tells of it.
    void type(std::string const& text)
    {
        loop.longest = 0;
        auto const begun = Clock::now();
        loop.timed([&] { model->setSearchText(text); });
        settle();
        Milliseconds const waited = Clock::now() - begun;
        std::printf("%-10s %9zu photos %9.2f ms main thread %9.1f ms until shown\n",
            ("\"" + text + "\"").c_str(), model->items->size(), loop.longest, waited.count());
        held.push_back(loop.longest);
        shown.push_back(waited.count());
    }

    std::vector<double> held; ///< the main thread, ms a key
    std::vector<double> shown; ///< until the photos were there
};

void tell(char const* what, std::vector<double> times)
{
    std::ranges::sort(times);
    std::printf("%s: median %.2f ms, worst %.2f ms\n", what, times[times.size() / 2], times.back());
}

} // namespace

int main(int count, char** words)
{
    std::size_t const photos = count > 1 ? std::strtoull(words[1], nullptr, 10) : 1'000'000;
    World world(photos);
    BrowserModel model({ world.loop, world.background, world.files, world.preferences,
        world.textOrder, world.imageTypes, world.panels, world.operations, world.clipboard,
        world.workspace, world.prefetch, world.screenAwake, world.random });
    world.model = &model;
    model.open(FileUrl("/photos"));
    world.settle();
    // The field has got the keyboard, as it has some time before the first key.
    auto const begun = Clock::now();
    model.expectSearch();
    world.settle();
    Milliseconds const ready = Clock::now() - begun;
    std::printf("ready to be searched after %.1f ms\n", ready.count());
    for (char const* word : { "img_12345", "k\xC3\xB6ln (77", "2026-07-14 9", ".jpg" }) {
        model.moveCursor(1, Extend::no);
        std::string typed;
        for (char const* letter = word; *letter != '\0'; ++letter) {
            typed += *letter;
            world.type(typed);
        }
        while (typed.size() > 1) {
            typed.pop_back();
            world.type(typed);
        }
        world.type("");
    }
    std::printf("%zu photos, %zu keys\n", photos, world.held.size());
    tell("main thread", world.held);
    tell("until shown", world.shown);
    std::fflush(stdout);
    std::_Exit(0);
}
