#include "sidebar/UnreportedFolders.h"
#include "model/PhotoTest.h"
#include "sidebar/FolderListing.h"
#include "support/FakeBackground.h"
#include "support/FakeFileSystem.h"
#include "support/FakeFolderEvents.h"
#include "support/FakeImageTypes.h"
#include "support/FakeLoop.h"
#include "support/FakeTextOrder.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// A network drive with one folder on the screen, as it was listed at the start.
struct Drive {
    FakeLoop loop;
    FakeBackground background;
    FakeFileSystem files;
    FakeTextOrder textOrder;
    FakeImageTypes imageTypes;
    FakeFolderEvents events;
    std::shared_ptr<PhotoTest> photoTest = std::make_shared<PhotoTest>(imageTypes);
    FileUrl folder { "/netz" };
    std::size_t listed = 0;
    int changes = 0;
    int date = 0;
    std::optional<UnreportedFolders> watcher;

    Drive()
    {
        files.addFolder("/netz/a");
        events.remote.insert(folder);
        listed = hash();
        watcher.emplace(loop, background, &events,
            UnreportedFolders::Asks {
                [this] {
                    return std::vector<UnreportedFolders::Known> { { folder, listed } };
                },
                [this] { return tools(); }, [this] { ++changes; }, photoTest });
    }

    FolderTools tools() { return { files, textOrder, *photoTest }; }
    std::size_t hash() { return hashOfNames(subfolderURLs(tools(), folder)); }

    void touch()
    {
        files.remove(folder);
        files.addFolder("/netz/a");
        files.setModified(folder, Timestamp(std::chrono::nanoseconds(++date)));
    }

    // Lets one interval pass, and the look that it brings.
    void look()
    {
        loop.advance(UnreportedFolders::interval);
        background.finishAll();
        loop.settle();
    }

    std::size_t listingsDuringLook()
    {
        auto const before = files.listings().size();
        look();
        return files.listings().size() - before;
    }
};

} // namespace

TEST_CASE("a subfolder that others made is found at the next look")
{
    Drive drive;
    drive.look();
    CHECK(drive.changes == 0);
    drive.touch();
    drive.files.addFolder("/netz/neu");
    drive.look();
    CHECK(drive.changes == 1);
}

TEST_CASE("a subfolder made before the first look is found too")
{
    Drive drive;
    drive.files.addFolder("/netz/neu");
    drive.look();
    CHECK(drive.changes == 1);
}

TEST_CASE("photos that come and go do not count")
{
    Drive drive;
    drive.look();
    drive.touch();
    drive.files.addFile(FileUrl("/netz/1.jpg"));
    drive.look();
    drive.look();
    CHECK(drive.changes == 0);
}

TEST_CASE("a folder whose date stays is listed only now and then")
{
    Drive drive;
    CHECK(drive.listingsDuringLook() == 1);
    CHECK(drive.listingsDuringLook() == 1); // the same date may stand for two changes
    CHECK(drive.listingsDuringLook() == 0);
    drive.touch();
    CHECK(drive.listingsDuringLook() == 1);
    CHECK(drive.listingsDuringLook() == 1);
    CHECK(drive.listingsDuringLook() == 0);
}

TEST_CASE("a folder that vanished with what was in it is a change")
{
    Drive drive;
    drive.look();
    drive.files.remove(drive.folder);
    drive.look();
    CHECK(drive.changes == 1);
}

TEST_CASE("folders on drives that report are left alone, and asked about once")
{
    Drive drive;
    drive.events.remote.clear();
    drive.files.addFolder("/netz/neu");
    CHECK(drive.listingsDuringLook() == 0);
    CHECK(drive.changes == 0);
    CHECK(drive.background.lastPriority == Priority::utility);
    drive.loop.advance(UnreportedFolders::interval);
    CHECK(drive.background.pending() == 0);
    drive.events.remote.insert(drive.folder);
    drive.watcher->forget();
    drive.look();
    CHECK(drive.changes == 1);
}

TEST_CASE("a look waits for the one before it, and none outlives its owner")
{
    Drive drive;
    drive.loop.advance(10 * UnreportedFolders::interval);
    CHECK(drive.background.pending() == 1);
    drive.files.addFolder("/netz/neu");
    drive.watcher.reset();
    drive.background.finishAll();
    drive.loop.settle();
    CHECK(drive.changes == 0);
}
