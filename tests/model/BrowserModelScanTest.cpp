#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("without a folder nothing is scanned")
{
    Desk desk;
    desk.model().startScan();
    desk.model().reload();
    CHECK(desk.background.pending() == 0);
    CHECK_FALSE(*desk.model().isLoading);
    CHECK(desk.model().scanGeneration() == 0);
}

TEST_CASE("a scan runs at the priority of something people wait for")
{
    Desk desk;
    desk.model().selectFolders({ desk.folder("/b") }, FocusGallery::no);
    CHECK(desk.background.lastPriority == Priority::userInitiated);
}

TEST_CASE("of two scans in succession only the second one's result is shown")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.model().setIncludeSubfolders(true);
    desk.folder("/b/c", { "2.jpg" });
    desk.model().setIncludeSubfolders(false);
    desk.model().setIncludeSubfolders(true);
    REQUIRE(desk.background.pending() == 3);
    SUBCASE("when it ends first")
    {
        desk.finish(2);
        CHECK_FALSE(*desk.model().isLoading);
    }
    SUBCASE("when it ends last")
    {
        desk.finish(0);
        desk.finish(0);
        CHECK(desk.names() == Names { "1.jpg" });
        CHECK(*desk.model().isLoading);
    }
    SUBCASE("when an older one has ended, but not yet arrived")
    {
        desk.background.finish(0);
        desk.background.finish(1);
    }
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
    CHECK_FALSE(*desk.model().isLoading);
}

TEST_CASE("a result that has ended but not arrived is dropped by a newer scan")
{
    Desk desk;
    desk.folder("/b", { "1.jpg" });
    desk.folder("/c", { "2.jpg" });
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    desk.background.finish(0);
    desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
    desk.loop.settle();
    CHECK(desk.model().items->empty());
    CHECK(*desk.model().isLoading);
    desk.settle();
    CHECK(desk.names() == Names { "2.jpg" });
}

TEST_CASE("a scan that ends after the model has gone harms nothing")
{
    Desk desk;
    desk.folder("/b", { "1.jpg" });
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    SUBCASE("while its answer is on its way")
    {
        desk.background.finish(0);
        desk.browser.reset();
    }
    SUBCASE("before it has begun")
    {
        desk.browser.reset();
    }
    desk.settle();
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("the old photos stay in view until a reload has ended")
{
    Desk desk;
    auto const folder = desk.open("/b", { "1.jpg" });
    desk.files.addFile(folder.child("2.jpg"));
    auto const tree = desk.model().treeVersion.get();
    auto const counts = desk.model().countsVersion.get();
    desk.model().reload();
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK(*desk.model().isLoading);
    CHECK(*desk.model().treeVersion == tree + 1);
    CHECK(*desk.model().countsVersion == counts + 1);
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
}

TEST_CASE("a photo that disappears between two scans leaves the selection")
{
    Desk desk;
    auto const folder = desk.open("/b", { "1.jpg", "2.jpg", "3.jpg" });
    desk.model().toggle(0);
    desk.model().toggle(1);
    desk.files.remove(folder.child("2.jpg"));
    desk.model().reload();
    SUBCASE("marked before the scan") { }
    SUBCASE("with another one marked while the scan ran")
    {
        desk.model().toggle(2);
    }
    auto expected = *desk.model().selection;
    expected.erase(folder.child("2.jpg"));
    desk.settle();
    CHECK(*desk.model().selection == expected);
}

TEST_CASE("marked photos that the filter hides stay marked after a scan")
{
    Desk desk;
    auto const folder = desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().toggle(0);
    desk.model().setSearchText("2");
    desk.model().reload();
    desk.settle();
    CHECK(*desk.model().selection == UrlSet { folder.child("1.jpg") });
}

TEST_CASE("photos of several folders are shown together, each once")
{
    Desk desk;
    desk.folder("/b/c", { "2.jpg" });
    desk.folder("/b", { "1.jpg" });
    desk.model().setIncludeSubfolders(true);
    desk.model().selectFolders({ FileUrl("/b/c"), FileUrl("/b") }, FocusGallery::no);
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
}

TEST_CASE("a change of the subfolder setting scans again; the same value does not")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.folder("/b/c", { "2.jpg" });
    desk.model().setIncludeSubfolders(false);
    CHECK(desk.background.pending() == 0);
    desk.model().setIncludeSubfolders(true);
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
}

TEST_CASE("order and search text that change while a scan runs are those of its result")
{
    Desk desk;
    desk.folder("/b", { "1.jpg", "2.jpg", "12.jpg" });
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    SUBCASE("order")
    {
        desk.model().setAscending(false);
        desk.settle();
        CHECK(desk.names() == Names { "12.jpg", "2.jpg", "1.jpg" });
    }
    SUBCASE("order, when the scan has ended but not arrived")
    {
        desk.background.finish(0);
        desk.model().setAscending(false);
        desk.settle();
        CHECK(desk.names() == Names { "12.jpg", "2.jpg", "1.jpg" });
    }
    SUBCASE("search text")
    {
        desk.model().setSearchText("1");
        desk.settle();
        CHECK(desk.names() == Names { "1.jpg", "12.jpg" });
    }
}

TEST_CASE("photos are ordered by the sort key and its direction")
{
    Desk desk;
    auto const folder = desk.folder("/b");
    using namespace std::chrono_literals;
    desk.files.addFile(folder.child("a.jpg"), 30, Timestamp(1h));
    desk.files.addFile(folder.child("b.jpg"), 10, Timestamp(2h));
    desk.files.addFile(folder.child("c.jpg"), 20, Timestamp(2h));
    desk.model().selectFolders({ folder }, FocusGallery::no);
    desk.settle();
    desk.model().setSortKey(SortKey::size);
    CHECK(desk.names() == Names { "b.jpg", "c.jpg", "a.jpg" });
    desk.model().setSortKey(SortKey::date);
    CHECK(desk.names() == Names { "a.jpg", "b.jpg", "c.jpg" });
    desk.model().setAscending(false);
    CHECK(desk.names() == Names { "c.jpg", "b.jpg", "a.jpg" });
}

TEST_CASE("viewer and cursor stay with their photos when the order changes")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg", "3.jpg" });
    desk.model().openViewer(0);
    desk.model().setAscending(false);
    CHECK(*desk.model().viewerIndex == 2);
    CHECK(*desk.model().cursor == 2);
    desk.model().closeViewer();
    desk.model().setAscending(true);
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK(*desk.model().cursor == 0);
}

TEST_CASE("viewer and cursor end with photos that are no longer visible")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().openViewer(0);
    desk.model().setSearchText("2");
    CHECK(desk.names() == Names { "2.jpg" });
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK_FALSE(desk.model().cursor->has_value());
}

TEST_CASE("the viewer stays with its photo over a reload that shifts it")
{
    Desk desk;
    auto const folder = desk.open("/b", { "2.jpg", "3.jpg" });
    desk.model().openViewer(1);
    desk.files.addFile(folder.child("1.jpg"));
    desk.model().reload();
    desk.settle();
    CHECK(*desk.model().viewerIndex == 2);
    CHECK(*desk.model().cursor == 2);
}

TEST_CASE("a search text of blanks shows everything")
{
    Desk desk;
    desk.open("/b", { "img_0001.jpg", "x.jpg" });
    desk.model().setSearchText("  ");
    CHECK(desk.names().size() == 2);
    desk.model().setSearchText(" IMG ");
    CHECK(desk.names() == Names { "img_0001.jpg" });
}

TEST_CASE("an image opened while a filter hides it opens no viewer")
{
    Desk desk;
    desk.folder("/b", { "1.jpg", "2.jpg" });
    desk.model().open(FileUrl("/b/1.jpg"));
    desk.finish(0);
    desk.model().setSearchText("2");
    desk.settle();
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK_FALSE(desk.model().pendingFileToShow().has_value());
}

TEST_CASE("observers hear of an operation once, when it is complete")
{
    Desk desk;
    desk.folder("/b", { "1.jpg" });
    int turns = 0;
    auto const observation = desk.model().observe([&] {
        ++turns;
        CHECK(desk.model().folders->size() == 1);
        CHECK(*desk.model().isLoading == desk.model().items->empty());
    });
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    CHECK(turns == 0);
    desk.settle();
    CHECK(turns == 2);
}

TEST_CASE("a very long list is freed in the background")
{
    Desk desk;
    Names names;
    for (int i = 0; i <= 100'000; ++i)
        names.push_back(std::to_string(i) + ".jpg");
    desk.open("/b", names);
    desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
    CHECK(desk.model().items->empty());
    CHECK(desk.model().allItems().empty());
    CHECK(desk.background.pending() == 3); // both lists, and the scan of /c
    desk.settle();
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("what is set to the value it has already is not derived anew")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.model().setSearchText("1");
    desk.loop.settle();
    int turns = 0;
    auto const observation = desk.model().observe([&] { ++turns; });
    desk.model().setSearchText("1");
    desk.model().setSortKey(SortKey::name);
    desk.model().setAscending(true);
    desk.loop.settle();
    CHECK(turns == 0);
}
