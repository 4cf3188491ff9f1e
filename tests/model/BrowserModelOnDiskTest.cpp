#include "icu/IcuTextOrder.h"
#include "model/BrowserModel.h"
#include "ports/Background.h"
#include "posix/PosixFileSystem.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileOperations.h"
#include "support/FakeImageTypes.h"
#include "support/FakeLoop.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakePreferences.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include "support/FakeWorkspace.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <mutex>
#include <sys/stat.h>
#include <thread>

using namespace pixelhain;

namespace {

// Work on threads of its own, which can be waited for.
class Threads final : public Background {
public:
    void run(Priority, std::function<void()> work) override
    {
        std::scoped_lock const guard(lock_);
        threads_.emplace_back(std::move(work));
    }

    // Whether there was anything to wait for.
    bool join()
    {
        std::vector<std::jthread> running;
        {
            std::scoped_lock const guard(lock_);
            running.swap(threads_);
        }
        return !running.empty();
    }

private:
    std::mutex lock_;
    std::vector<std::jthread> threads_;
};

struct RealWorld {
    TemporaryFolder folder;
    FakeLoop loop;
    PosixFileSystem files;
    FakePreferences preferences;
    IcuTextOrder order { "de_DE" };
    FakeImageTypes types;
    FakePanels panels;
    FakeFileSystem noFiles;
    FakeFileOperations operations { noFiles };
    FakeClipboard clipboard;
    FakeWorkspace workspace;
    FakePicturePrefetch prefetch;
    FakeScreenAwake screenAwake;
    FakeRandomSource random;
    Threads threads;
    BrowserModel model { Ports { loop, threads, files, preferences, order, types, panels,
        operations, clipboard, workspace, prefetch, screenAwake, random } };

    void settle()
    {
        while (threads.join())
            loop.settle();
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> shown;
        for (auto const& item : *model.items)
            shown.emplace_back(item.name());
        return shown;
    }
};

} // namespace

TEST_CASE("a folder on the disk is shown in people's order, whatever its names are made of")
{
    RealWorld world;
    for (auto const* name : { "img_10.jpg", "IMG_2.jpg", "\xC4rger.jpg", "über.jpg", "zu.txt" })
        (void)world.folder.file(name);
    REQUIRE(::mkfifo(world.folder.url().child("rohr.jpg").cString(), 0600) == 0);
    REQUIRE(::mkdir(world.folder.url().child("ordner.jpg").cString(), 0700) == 0);
    world.model.open(world.folder.url());
    world.settle();
    auto shown = world.names();
    REQUIRE(shown.size() == 4);
    std::erase(shown, "\xC4rger.jpg");
    CHECK(shown == std::vector<std::string> { "IMG_2.jpg", "img_10.jpg", "über.jpg" });
}

TEST_CASE("many requests in a row on real threads end with the last one")
{
    RealWorld world;
    auto const picture = world.folder.file("b.jpg");
    (void)world.folder.file("a.jpg");
    for (int round = 0; round < 50; ++round) {
        world.model.open(world.folder.url().parent());
        world.model.open(picture);
        world.model.reload();
    }
    world.settle();
    CHECK(*world.model.folder == world.folder.url());
    CHECK(world.names() == std::vector<std::string> { "a.jpg", "b.jpg" });
    CHECK(*world.model.viewerIndex == 1);
}
