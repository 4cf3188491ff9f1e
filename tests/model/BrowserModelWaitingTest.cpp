#include "support/LongList.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

constexpr auto half = LongList::count / 2;

} // namespace

TEST_CASE("all photos are marked that what was typed lets through, once it has been looked for")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b");
    model.selectAll();
    CHECK(model.selection->empty());
    test.desk.settle();
    CHECK(model.selection->size() == half);
    CHECK(std::ranges::all_of(
        *model.items, [&](PhotoItem const& item) { return model.selection->contains(item.url); }));
}

TEST_CASE("marks are turned round in what was typed last")
{
    LongList test;
    auto& model = test.model();
    model.toggle(0);
    model.toggle(LongList::count - 1);
    model.setSearchText("b");
    model.invertSelection();
    test.desk.settle();
    CHECK(model.selection->size() == half - 1);
    CHECK_FALSE(model.selection->contains(model.items->back().url));
}

TEST_CASE("a slideshow shows what was typed last")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b2399");
    model.startSlideshow();
    CHECK_FALSE(*model.isSlideshow);
    test.desk.settle();
    CHECK(*model.isSlideshow);
    CHECK((*model.items)[**model.viewerIndex].name() == "b23990.jpg");
    for (int slide = 1; slide < 10; ++slide)
        model.stepViewer(+1);
    CHECK((*model.items)[**model.viewerIndex].name() == "b23999.jpg");
}

TEST_CASE("the dialog for a contact sheet waits for what was typed, and needs photos")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b");
    model.setShowContactSheetDialog(true);
    CHECK_FALSE(*model.showContactSheetDialog);
    test.desk.settle();
    CHECK(*model.showContactSheetDialog);
    model.setShowContactSheetDialog(false);
    model.setSearchText("nichts");
    model.setShowContactSheetDialog(true);
    test.desk.settle();
    CHECK_FALSE(*model.showContactSheetDialog);
}

TEST_CASE("commands that are given while one waits have their turn after it")
{
    LongList test;
    auto& model = test.model();
    auto const last = model.items->back().url;
    model.setSearchText("b2399");
    model.selectAll();
    model.toggle(LongList::count - 1); // takes the last one out again
    model.trashTargets();
    test.desk.settle();
    CHECK(test.desk.names() == Names { "b23999.jpg" });
    CHECK(test.desk.status() == "9 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig");
    CHECK(model.selection->empty());
}

TEST_CASE("of turned marks none is trashed that was marked before")
{
    LongList test;
    auto& model = test.model();
    model.toggle(LongList::count - 1);
    model.setSearchText("b2399");
    model.invertSelection();
    model.copyToClipboard();
    model.trashTargets();
    test.desk.settle();
    CHECK(test.desk.names() == Names { "b23999.jpg" });
    CHECK(test.desk.clipboard.contents.size() == 9);
}

TEST_CASE("a command that waits is for the photo that was under the cursor when it was given")
{
    LongList test;
    auto& model = test.model();
    model.moveCursor(-1, Extend::no);
    model.setSearchText("b2399");
    model.selectAll();
    model.selectNone();
    model.trashTargets();
    model.openViewer(LongList::count - 2); // looks at another meanwhile
    test.desk.settle();
    CHECK(test.shown() == 9);
    CHECK(std::ranges::count(*model.items, "b23999.jpg", &PhotoItem::name) == 0);
}

TEST_CASE("a command that waits takes no photo at the cursor that is hidden by then")
{
    LongList test;
    auto& model = test.model();
    model.moveCursor(+1, Extend::no);
    model.setSearchText("b2399");
    model.selectAll();
    model.selectNone();
    model.trashTargets();
    test.desk.settle();
    CHECK(model.allItems().size() == LongList::count);
}

TEST_CASE("the photo that is shown large is marked at once, whatever waits")
{
    LongList test;
    auto& model = test.model();
    model.openViewer(LongList::count - 3);
    auto const seen = model.items->back().url;
    model.stepViewer(+1);
    model.stepViewer(+1);
    model.setSearchText("b2399");
    model.invertSelection();
    model.markInViewer();
    CHECK(*model.selection == UrlSet { seen });
    test.desk.settle();
    CHECK(model.selection->size() == 9);
    CHECK_FALSE(model.selection->contains(seen));
}

TEST_CASE("who marks in the viewer while commands wait is shown the next photo")
{
    LongList test;
    auto& model = test.model();
    model.openViewer(half);
    model.setSearchText("b");
    model.selectAll();
    model.markInViewer();
    CHECK(*model.viewerIndex == half + 1);
    CHECK(model.selection->size() == 1);
}

TEST_CASE("who types on has given up what waits, who orders anew has not")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b");
    model.selectAll();
    model.setSearchText("");
    test.desk.settle();
    CHECK(model.selection->empty());
    model.setSearchText("b");
    model.selectAll();
    model.setSearchText("b2");
    test.desk.settle();
    CHECK(model.selection->empty());
    model.setSearchText("b2399");
    model.selectAll();
    model.setAscending(false);
    test.desk.settle();
    CHECK(model.selection->size() == 10);
}

TEST_CASE("commands that wait are not for other folders")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b");
    model.selectAll();
    model.startSlideshow();
    test.desk.open("/c", { "1.jpg" });
    CHECK(model.selection->empty());
    CHECK_FALSE(*model.isSlideshow);
}

TEST_CASE("commands that wait are not for photos that another scan finds first")
{
    LongList test;
    auto& model = test.model();
    test.desk.files.addFolder("/b/sub");
    test.desk.files.addFile(FileUrl("/b/sub/b0.jpg"), 1, Timestamp());
    model.setSearchText("b");
    model.selectAll();
    model.trashTargets();
    model.setIncludeSubfolders(true);
    while (test.desk.background.pending() > 1)
        test.desk.finish(1); // the scan is faster than the search
    REQUIRE(test.shown() == half + 1);
    CHECK(model.selection->empty());
    test.desk.settle();
    CHECK(model.selection->empty());
    CHECK(model.allItems().size() == LongList::count + 1);
    CHECK(model.lastTrashed().empty());
}

TEST_CASE("a search is told of when it takes longer than a moment")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b");
    test.desk.loop.advance(250ms);
    CHECK_FALSE(*model.isSearching);
    model.setSearchText("b2");
    test.desk.loop.advance(50ms);
    CHECK(*model.isSearching);
    test.desk.settle();
    CHECK_FALSE(*model.isSearching);
    model.setSearchText("b23");
    test.desk.settle();
    test.desk.loop.advance(1s);
    CHECK_FALSE(*model.isSearching);
    model.setSearchText("b239");
    test.desk.loop.advance(1s);
    CHECK(*model.isSearching);
    model.setSearchText("b23");
    CHECK_FALSE(*model.isSearching);
}
