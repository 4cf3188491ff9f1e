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

TEST_CASE("the cursor is placed in what was typed, once it has been looked for")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b2399");
    model.placeCursor();
    CHECK_FALSE(model.cursor->has_value());
    test.desk.settle();
    CHECK(*model.cursor == 0U);
    CHECK(model.items->front().name() == "b23990.jpg");
    model.moveCursor(+1, Extend::no);
    model.placeCursor();
    CHECK(*model.cursor == 1U);
}

TEST_CASE("among no photos no cursor is placed")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("nirgends");
    model.placeCursor();
    test.desk.settle();
    CHECK_FALSE(model.cursor->has_value());
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

TEST_CASE("marks that are made while others wait have their turn after them")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b2399");
    model.selectAll();
    model.toggle(LongList::count - 1); // takes the last one out again
    test.desk.settle();
    CHECK(model.selection->size() == 9);
    CHECK_FALSE(model.selection->contains(FileUrl("/b/b23999.jpg")));
    model.setSearchText("");
    model.setSearchText("b2399");
    model.selectAll();
    model.selectNone();
    test.desk.settle();
    CHECK(model.selection->empty());
}

TEST_CASE("a photo that goes while its mark waits is not marked")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b2399");
    model.selectAll();
    model.toggle(LongList::count - 1);
    model.moveCursor(-1, Extend::yes);
    model.removeItems({ FileUrl("/b/b23999.jpg") });
    test.desk.settle();
    CHECK(test.shown() == 9);
    CHECK(model.selection->size() == 9);
}

TEST_CASE("who marks all and types on trashes nothing before seeing what is marked")
{
    LongList test;
    auto& model = test.model();
    model.openViewer(LongList::count - 1);
    model.closeViewer();
    model.setSearchText("b");
    model.selectAll();
    model.trashTargets();
    model.setSearchText("b2");
    model.trashTargets();
    test.desk.settle();
    CHECK(model.selection->empty());
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

TEST_CASE("a slideshow that waits is taken back by whoever asks again, or presses Escape")
{
    LongList test;
    auto& model = test.model();
    auto const runsAfter = [&](auto const& takeBack) {
        model.setSearchText("");
        test.desk.settle();
        model.setSearchText("b2399");
        model.startSlideshow();
        takeBack();
        test.desk.settle();
        auto const runs = *model.isSlideshow;
        model.closeViewer();
        return runs;
    };
    CHECK(runsAfter([] {}));
    CHECK_FALSE(runsAfter([&] { model.startSlideshow(); }));
    CHECK_FALSE(runsAfter([&] { model.stopSlideshow(); }));
    CHECK_FALSE(runsAfter([&] { CHECK(test.desk.press(53)); }));
    CHECK_FALSE(runsAfter([&] {
        model.openViewer(0);
        CHECK(test.desk.press(53));
        CHECK_FALSE(model.viewerIndex->has_value());
    }));
    CHECK(runsAfter([&] { model.removeItems({ FileUrl("/b/a0.jpg") }); }));
    CHECK(runsAfter([&] {
        model.startSlideshow();
        model.startSlideshow();
    }));
}

TEST_CASE("a dialog for a contact sheet that waits is taken back")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("b");
    model.setShowContactSheetDialog(true);
    model.setShowContactSheetDialog(false);
    test.desk.settle();
    CHECK_FALSE(*model.showContactSheetDialog);
    model.setSearchText("b2");
    model.selectAll();
    model.setShowContactSheetDialog(true);
    CHECK(test.desk.press(53));
    test.desk.settle();
    CHECK_FALSE(*model.showContactSheetDialog);
    CHECK(model.selection->size() == test.shown());
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
