// Photos that are shown by name while a slow disk still tells of each of them.
#include "support/Desk.h"
#include <algorithm>
#include <chrono>
#include <doctest/doctest.h>
#include <future>
#include <optional>
#include <string>
#include <thread>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// The folder "/b", whose scan has told the names and goes on when the disk may tell the rest.
struct SlowDisk {
    Desk desk;
    FileUrl folder = desk.folder("/b");
    std::promise<void> mayTell;
    std::jthread scan;

    SlowDisk()
    {
        desk.scanPatience = 0ms;
        desk.start();
        desk.files.addFile(folder.child("a.jpg"), 30, Timestamp(1h));
        desk.files.addFile(folder.child("b.jpg"), 10, Timestamp(2h));
        desk.files.addFile(folder.child("c.jpg"), 20, Timestamp(3h));
        desk.files.afterDetails = [gate = mayTell.get_future().share()] { gate.wait(); };
    }
    ~SlowDisk()
    {
        if (scan.joinable())
            mayTell.set_value();
    }
    SlowDisk(SlowDisk const&) = delete;
    SlowDisk& operator=(SlowDisk const&) = delete;

    BrowserModel& model() { return desk.model(); }

    void showNames()
    {
        if (model().folders->empty())
            model().selectFolders({ folder }, FocusGallery::no);
        awaitNames();
        desk.loop.settle();
    }

    void awaitNames()
    {
        desk.loop.settle();
        scan = std::jthread([this] { desk.background.finish(0); });
        desk.loop.awaitPost();
    }

    void tellTheRest()
    {
        mayTell.set_value();
        scan.join();
        desk.settle();
    }

    bool knowsAll()
    {
        return std::ranges::all_of(*model().items, [](PhotoItem const& item) {
            return !item.isKnownByName() && item.date != distantPast;
        });
    }
};

} // namespace

TEST_CASE("photos are shown by name while the disk still tells of each")
{
    SlowDisk disk;
    disk.showNames();
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    CHECK_FALSE(*disk.model().isLoading);
    CHECK_FALSE(disk.knowsAll());
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    CHECK(disk.knowsAll());
    disk.model().setSortKey(SortKey::size);
    CHECK(disk.desk.names() == Names { "b.jpg", "c.jpg", "a.jpg" });
}

TEST_CASE("marks, cursor, range, viewer and slideshow stay when the rest is told")
{
    SlowDisk disk;
    disk.showNames();
    disk.model().click(1, { .command = true });
    disk.model().toggle(2);
    auto const anchor = disk.model().anchor();
    REQUIRE(anchor);
    SUBCASE("in the gallery") { }
    SUBCASE("in the viewer")
    {
        disk.model().openViewer(2);
    }
    SUBCASE("in a slideshow")
    {
        disk.model().startSlideshow();
        REQUIRE(*disk.model().isSlideshow);
    }
    auto const marked = disk.desk.marked();
    auto const cursor = *disk.model().cursor;
    auto const viewer = *disk.model().viewerIndex;
    bool const isSlideshow = *disk.model().isSlideshow;
    disk.tellTheRest();
    CHECK(disk.desk.marked() == marked);
    CHECK(*disk.model().cursor == cursor);
    CHECK(disk.model().anchor() == anchor);
    CHECK(*disk.model().viewerIndex == viewer);
    CHECK(*disk.model().isSlideshow == isSlideshow);
    CHECK(disk.knowsAll());
}

TEST_CASE("a file that is to be shown is in the viewer as soon as its name is there")
{
    SlowDisk disk;
    disk.model().open(disk.folder.child("b.jpg"));
    disk.desk.finish(0); // looks whether it is there
    disk.showNames();
    CHECK(*disk.model().viewerIndex == 1);
    disk.model().stepViewer(1);
    disk.tellTheRest();
    CHECK(*disk.model().viewerIndex == 2);
}

TEST_CASE("an order by date or size waits until those are told")
{
    SlowDisk disk;
    disk.showNames();
    disk.model().openViewer(0);
    disk.model().setSortKey(SortKey::size);
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    SUBCASE("and comes then, the viewer at its photo")
    {
        disk.desk.loop.advance(1s);
        CHECK(*disk.model().isSearching);
        disk.tellTheRest();
        CHECK(disk.desk.names() == Names { "b.jpg", "c.jpg", "a.jpg" });
        CHECK(*disk.model().viewerIndex == 2);
        CHECK(*disk.model().cursor == 2);
    }
    SUBCASE("and comes then without a photo that was removed meanwhile")
    {
        disk.model().removeItems({ disk.folder.child("b.jpg") });
        disk.tellTheRest();
        CHECK(disk.desk.names() == Names { "c.jpg", "a.jpg" });
        CHECK(*disk.model().viewerIndex == 1);
    }
    SUBCASE("and is forgotten when names are chosen again")
    {
        disk.model().setSortKey(SortKey::name);
        disk.tellTheRest();
        CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
        CHECK(*disk.model().viewerIndex == 0);
        CHECK(disk.knowsAll());
    }
    CHECK_FALSE(*disk.model().isSearching);
}

TEST_CASE("a search among names finds, and shows all that is known later")
{
    SlowDisk disk;
    disk.showNames();
    disk.model().setSearchText("b");
    CHECK(disk.desk.names() == Names { "b.jpg" });
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "b.jpg" });
    CHECK(disk.knowsAll());
    disk.model().setSearchText("");
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    CHECK(disk.knowsAll());
}

TEST_CASE("a photo that is removed while names are shown does not come back with the rest")
{
    SlowDisk disk;
    disk.showNames();
    disk.model().click(2, { .command = true });
    disk.model().moveCursor(1, Extend::no);
    disk.model().removeItems({ disk.folder.child("b.jpg") });
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "a.jpg", "c.jpg" });
    CHECK(disk.desk.marked() == Names { "c.jpg" });
    CHECK(*disk.model().cursor == 1);
    CHECK(disk.model().allItems().size() == 2);
}

TEST_CASE("a photo that had gone when it was looked at is not mistaken for its neighbour")
{
    SlowDisk disk;
    disk.desk.files.vanishing.insert(disk.folder.child("b.jpg"));
    disk.showNames();
    disk.model().selectAll();
    std::optional<std::size_t> viewer;
    SUBCASE("the viewer that shows it closes")
    {
        disk.model().openViewer(1);
    }
    SUBCASE("the viewer that shows another stays with that")
    {
        disk.model().openViewer(2);
        viewer = 1;
    }
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "a.jpg", "c.jpg" });
    CHECK(disk.desk.marked() == Names { "a.jpg", "c.jpg" });
    CHECK(*disk.model().viewerIndex == viewer);
    CHECK(disk.knowsAll());
}

TEST_CASE("a command that waits meets no other photo when its own had gone")
{
    SlowDisk disk;
    disk.desk.files.vanishing.insert(disk.folder.child("b.jpg"));
    disk.showNames();
    disk.model().trash({ disk.folder.child("a.jpg") });
    SUBCASE("from the viewer")
    {
        disk.model().openViewer(1);
    }
    SUBCASE("of a mark, with another photo at the cursor")
    {
        disk.model().toggle(1);
        disk.model().moveCursor(1, Extend::no); // from no photo to the first
        disk.model().moveCursor(2, Extend::no);
        REQUIRE(*disk.model().cursor == 2);
    }
    disk.model().trashTargets();
    disk.tellTheRest();
    CHECK(disk.desk.files.exists(disk.folder.child("c.jpg")));
    CHECK(disk.desk.names() == Names { "c.jpg" });
}

TEST_CASE("photos that were trashed while names are shown stay away, and come back with undo")
{
    SlowDisk disk;
    disk.showNames();
    disk.model().click(1, { .command = true });
    disk.model().trashTargets();
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "a.jpg", "c.jpg" });
    CHECK(disk.knowsAll());
    disk.model().undoTrash();
    disk.desk.settle();
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
}

TEST_CASE("a mark that is taken back while an order waits is taken back")
{
    SlowDisk disk;
    disk.showNames();
    disk.model().setSortKey(SortKey::date);
    disk.model().selectAll();
    disk.model().toggle(1);
    disk.tellTheRest();
    CHECK(disk.desk.marked() == Names { "a.jpg", "c.jpg" });
}

TEST_CASE("an order by size that was chosen before the folder waits for all that is known")
{
    SlowDisk disk;
    disk.model().setSortKey(SortKey::size);
    disk.desk.files.afterDetails = nullptr;
    disk.model().selectFolders({ disk.folder }, FocusGallery::no);
    disk.desk.loop.settle();
    disk.desk.background.finish(0);
    CHECK(disk.desk.loop.pending() == 1);
    disk.desk.settle();
    CHECK(disk.desk.names() == Names { "b.jpg", "c.jpg", "a.jpg" });
}

TEST_CASE("names are shown from the last to the first where that is chosen, before and after")
{
    SlowDisk disk;
    disk.model().setAscending(false);
    disk.showNames();
    CHECK(disk.desk.names() == Names { "c.jpg", "b.jpg", "a.jpg" });
    disk.model().setAscending(true);
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    CHECK(disk.knowsAll());
}

TEST_CASE("subfolders that are asked for while names are shown come with all that is known")
{
    SlowDisk disk;
    disk.showNames();
    disk.desk.files.addFile(disk.desk.folder("/b/sub").child("d.jpg"), 5, Timestamp(4h));
    disk.model().setIncludeSubfolders(true);
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "a.jpg", "b.jpg", "c.jpg", "d.jpg" });
    CHECK(disk.knowsAll());
}

TEST_CASE("a folder that vanishes while names are shown leaves an empty gallery")
{
    SlowDisk disk;
    for (auto const* name : { "a.jpg", "b.jpg", "c.jpg" })
        disk.desk.files.vanishing.insert(disk.folder.child(name));
    disk.showNames();
    REQUIRE(disk.model().items->size() == 3);
    disk.model().selectAll();
    disk.model().openViewer(0);
    disk.tellTheRest();
    CHECK(disk.model().items->empty());
    CHECK(disk.model().selection->empty());
    CHECK_FALSE(disk.model().viewerIndex->has_value());
}

TEST_CASE("a list that is too long to be searched at once is completed under a search")
{
    constexpr std::size_t others = 24'000;
    std::int64_t largest = 30;
    SlowDisk disk;
    for (std::size_t i = 0; i < others; ++i)
        disk.desk.files.addFile(
            disk.folder.child("x" + std::to_string(i) + ".jpg"), 1, Timestamp(1h));
    disk.showNames();
    REQUIRE(disk.model().items->size() == others + 3);
    disk.model().openViewer(1);
    SUBCASE("that has not begun")
    {
        disk.model().setSearchText("b");
        CHECK(disk.model().items->size() == others + 3);
    }
    SUBCASE("that has ended")
    {
        disk.model().setSearchText("b");
        disk.desk.settle();
        CHECK(disk.desk.names() == Names { "b.jpg" });
    }
    SUBCASE("with a photo removed meanwhile")
    {
        disk.model().setSearchText("b");
        disk.model().removeItems({ disk.folder.child("a.jpg") });
        largest = 20;
    }
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "b.jpg" });
    CHECK(*disk.model().viewerIndex == 0);
    CHECK(disk.knowsAll());
    disk.model().setSearchText("");
    disk.desk.settle();
    CHECK(disk.model().items->size() == disk.model().allItems().size());
    CHECK(disk.knowsAll());
    disk.model().setSortKey(SortKey::size);
    disk.desk.settle();
    CHECK(disk.model().items->back().size == largest);
}

TEST_CASE("names that no longer fit what was chosen are not shown")
{
    SlowDisk disk;
    disk.model().selectFolders({ disk.folder }, FocusGallery::no);
    disk.awaitNames();
    Names expected;
    SUBCASE("others were chosen")
    {
        disk.model().selectFolders({ disk.desk.folder("/empty") }, FocusGallery::no);
    }
    SUBCASE("another order was chosen, in which they come with the rest")
    {
        disk.model().setSortKey(SortKey::size);
        expected = { "b.jpg", "c.jpg", "a.jpg" };
    }
    disk.desk.loop.settle();
    CHECK(disk.model().items->empty());
    CHECK(*disk.model().isLoading);
    disk.tellTheRest();
    CHECK(disk.desk.names() == expected);
    CHECK_FALSE(*disk.model().isLoading);
}

TEST_CASE("a reload while names are shown ends with all that is known")
{
    SlowDisk disk;
    disk.showNames();
    disk.desk.files.addFile(disk.folder.child("d.jpg"), 5, Timestamp(4h));
    disk.model().reload();
    disk.model().setSortKey(SortKey::size);
    disk.tellTheRest();
    CHECK(disk.desk.names() == Names { "d.jpg", "b.jpg", "c.jpg", "a.jpg" });
    CHECK(disk.knowsAll());
    CHECK_FALSE(*disk.model().isLoading);
}

TEST_CASE("photos that are shown already are not shown by name alone when they are read again")
{
    SlowDisk disk;
    disk.showNames();
    disk.tellTheRest();
    disk.model().reload();
    disk.desk.loop.settle();
    disk.desk.background.finish(0);
    CHECK(disk.desk.loop.pending() == 1);
    disk.desk.settle();
    CHECK(disk.knowsAll());
}

TEST_CASE("names that are told after the model has gone harm nothing")
{
    SlowDisk disk;
    disk.model().selectFolders({ disk.folder }, FocusGallery::no);
    disk.awaitNames();
    disk.desk.browser.reset();
    disk.tellTheRest();
    CHECK(disk.desk.background.pending() == 0);
}
