#include "model/PhotoOrder.h"
#include "support/LongList.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <random>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// What is to be visible, by the filter rule and the comparator alone.
std::vector<PhotoItem> expected(BrowserModel const& model, TextOrder const& order)
{
    std::vector<PhotoItem> visible;
    for (auto const& item : model.allItems())
        if (matchesFilter(item, *model.searchText, order))
            visible.push_back(item);
    std::ranges::sort(visible, {}, &PhotoItem::url);
    if (!*model.ascending)
        std::ranges::reverse(visible);
    std::ranges::stable_sort(visible, [&](PhotoItem const& a, PhotoItem const& b) {
        return photoOrder(a, b, *model.sortKey, *model.ascending, order);
    });
    return visible;
}

// Somebody who types, sorts, moves and trashes while searches end in any order.
class Typist {
public:
    explicit Typist(unsigned seed)
        : random_(seed)
    {
    }

    void act(LongList& test)
    {
        auto& model = test.model();
        auto const somewhere = [&] { return random_() % std::max<std::size_t>(1, test.shown()); };
        switch (random_() % 8) {
        case 0:
        case 1: {
            static std::vector<std::string> const texts { "", "b", "b2", " 23 ", "A1", "nichts" };
            return model.setSearchText(texts[random_() % texts.size()]);
        }
        case 2:
            return model.setAscending(random_() % 2 == 0);
        case 3:
            return model.setSortKey(random_() % 2 == 0 ? SortKey::name : SortKey::size);
        case 4:
            return model.toggle(somewhere());
        case 5:
            return random_() % 2 == 0 ? model.openViewer(somewhere()) : model.closeViewer();
        case 6:
            if (test.shown() > 0)
                model.removeItems({ (*model.items)[somewhere()].url });
            return;
        default:
            if (auto const pending = test.desk.background.pending(); pending > 0)
                test.desk.finish(random_() % pending);
            return;
        }
    }

private:
    std::minstd_rand random_;
};

} // namespace

TEST_CASE("nothing is trashed, moved or copied from a list that is still being searched")
{
    LongList test;
    auto& model = test.model();
    model.toggle(3);
    model.toggle(LongList::count - 1);
    REQUIRE(model.actionTargets().size() == 2);
    model.setSearchText("b");
    REQUIRE(test.shown() == LongList::count); // not there yet
    CHECK(model.actionTargets().empty());
    model.trashTargets();
    model.moveOrCopyTargets(Transfer::move);
    model.copyToClipboard();
    model.revealInFinder();
    model.openWithDefaultApp();
    CHECK(test.desk.window.beepCount == 5);
    test.desk.settle();
    CHECK(model.allItems().size() == LongList::count);
    CHECK(test.desk.panels.requests.empty());
    CHECK(test.desk.clipboard.contents.empty());
    model.trashTargets(); // what can be seen
    test.desk.settle();
    CHECK(model.allItems().size() == LongList::count - 1);
    CHECK(model.selection->size() == 1);
}

TEST_CASE("a search that was expected folds no name any more, nor does the next")
{
    LongList test;
    auto& model = test.model();
    auto& folds = test.desk.textOrder.folds;
    auto const before = folds.load();
    model.expectSearch();
    CHECK(folds == before); // not on the main thread
    test.desk.settle();
    CHECK(folds == before + LongList::count);
    model.expectSearch();
    for (char const* text : { "b", "b1" }) {
        model.setSearchText(text);
        test.desk.settle();
    }
    CHECK(test.shown() > 0);
    CHECK(folds <= before + LongList::count + 2 * 2); // what is searched for
}

TEST_CASE("whoever has searched finds the next long list ready for it, too")
{
    LongList test;
    auto& folds = test.desk.textOrder.folds;
    test.model().expectSearch();
    test.desk.settle();
    auto const before = folds.load();
    test.model().reload();
    test.desk.settle();
    CHECK(folds == before + LongList::count);
}

TEST_CASE("a search that is expected holds up neither what is removed nor another folder")
{
    LongList test;
    auto& model = test.model();
    model.expectSearch();
    model.removeItems({ (*model.items)[5].url });
    CHECK(test.shown() == LongList::count - 1);
    test.desk.open("/c", { "c1.jpg" });
    CHECK(test.shown() == 1);
    test.desk.settle();
    CHECK(test.shown() == 1);
    model.setSearchText("c1");
    test.desk.settle();
    CHECK(test.shown() == 1);
}

TEST_CASE("a photo at the cursor of a list that is still being searched is not meant")
{
    LongList test;
    auto& model = test.model();
    model.moveCursor(1, Extend::no);
    REQUIRE(model.actionTargets().size() == 1);
    model.setSearchText("a");
    CHECK(model.actionTargets().empty());
    model.trashTargets();
    test.desk.settle();
    CHECK(model.allItems().size() == LongList::count);
    CHECK(model.actionTargets().size() == 1);
}

TEST_CASE("a photo that is shown large is trashed while the list is searched")
{
    LongList test;
    auto& model = test.model();
    model.openViewer(3);
    auto const seen = (*model.items)[3].url;
    model.toggle(5);
    model.setSearchText("b");
    CHECK(model.actionTargets() == std::vector { seen });
    model.trashTargets();
    test.desk.settle();
    REQUIRE(model.lastTrashed().size() == 1);
    CHECK(model.lastTrashed().front().original == seen);
}

TEST_CASE("a search that is taken back before its end leaves everything as it was")
{
    LongList test;
    auto& model = test.model();
    model.startSlideshow();
    REQUIRE(*model.isSlideshow);
    model.setSearchText("b");
    model.setSearchText("");
    test.desk.settle();
    CHECK(*model.isSlideshow);
    CHECK(test.shown() == LongList::count);
}

TEST_CASE("a short list is filtered at once")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().setSearchText("2");
    CHECK(desk.names() == Names { "2.jpg" });
}

TEST_CASE("a long list stays as it is until the search in the background is done")
{
    LongList test;
    test.model().setSearchText("b");
    CHECK(test.model().searchText.get() == "b");
    CHECK(test.shown() == LongList::count);
    CHECK(test.desk.background.lastPriority == Priority::userInteractive);
    test.desk.settle();
    CHECK(test.shown() == LongList::count / 2);
}

TEST_CASE("what was typed last is what is shown, in whatever order the searches end")
{
    LongList test;
    for (char const* text : { "b", "b2", "b23", "b2399" })
        test.model().setSearchText(text);
    REQUIRE(test.desk.background.pending() == 4);
    test.desk.finish(3);
    CHECK(test.shown() == 10);
    test.desk.settle();
    CHECK(test.shown() == 10);
    CHECK(test.desk.names().front() == "b23990.jpg");
}

TEST_CASE("order and text that change while a long list is searched both count")
{
    LongList test;
    test.model().setSearchText("b2399");
    test.model().setAscending(false);
    test.desk.settle();
    CHECK(test.shown() == 10);
    CHECK(test.desk.names().front() == "b23999.jpg");
}

TEST_CASE("a photo that is trashed while a long list is searched does not come back")
{
    LongList test;
    test.model().setSearchText("b2399");
    test.model().trash({ FileUrl("/b/b23995.jpg"), FileUrl("/b/a0.jpg") });
    while (test.desk.background.pending() > 1)
        test.desk.finish(1);
    test.desk.settle();
    CHECK(test.shown() == 9);
    test.desk.loop.advance(1s);
    CHECK(test.model().allItems().size() == LongList::count - 2);
    test.model().setSearchText("");
    CHECK(test.shown() == LongList::count - 2);
}

TEST_CASE("a list that an old search still reads is not copied to take a photo out")
{
    LongList test;
    auto& model = test.model();
    auto const* const first = model.allItems().data();
    model.setSearchText("b");
    model.setSearchText("b2399"); // and now the first one hangs
    REQUIRE(test.desk.background.pending() == 2);
    model.removeItems({ FileUrl("/b/b23995.jpg") });
    while (test.desk.background.pending() > 1)
        test.desk.finish(1);
    CHECK(test.shown() == 9);
    CHECK(model.allItems().data() == first);
    model.setSearchText("");
    CHECK(test.shown() == LongList::count - 1);
    model.setSearchText("b2399");
    while (test.desk.background.pending() > 1)
        test.desk.finish(1);
    CHECK(test.shown() == 9);
    test.desk.settle();
    model.removeItems({ FileUrl("/b/b23996.jpg") });
    CHECK(test.shown() == 8);
    test.desk.loop.advance(1s);
    CHECK(model.allItems().size() == LongList::count - 2);
    CHECK(model.allItems().data() == first);
}

TEST_CASE("other folders end a search that is under way")
{
    LongList test;
    test.model().setSearchText("b");
    test.desk.open("/c", { "1.jpg" });
    CHECK(test.desk.names() == Names { "1.jpg" });
    CHECK(test.model().searchText->empty());
}

TEST_CASE("a scan of a long list that ends with another text shows nothing before it is searched")
{
    LongList test;
    test.model().reload();
    test.model().setSearchText("b2399");
    while (test.desk.background.pending() > 0 && test.shown() == LongList::count)
        test.desk.finish(0);
    CHECK(test.shown() == 10);
    test.desk.settle();
    CHECK(test.shown() == 10);
    CHECK_FALSE(*test.model().isLoading);
}

TEST_CASE("the text may change again while a scan's list is searched")
{
    LongList test;
    test.model().startScan();
    test.model().setSearchText("b");
    test.desk.finish(0); // the scan
    CHECK(*test.model().isLoading);
    test.model().setSearchText("b2399");
    test.desk.settle();
    CHECK_FALSE(*test.model().isLoading);
    CHECK(test.shown() == 10);
}

TEST_CASE("the cursor and the viewer stay with their photos when a long list has been searched")
{
    LongList test;
    test.model().openViewer(LongList::count - 1);
    test.model().setSearchText("b2399");
    test.desk.settle();
    CHECK(*test.model().viewerIndex == 9U);
    test.model().setSearchText("a");
    test.desk.settle();
    CHECK_FALSE(test.model().viewerIndex->has_value());
}

TEST_CASE("a model that goes while a long list is searched harms nobody")
{
    LongList test;
    test.model().setSearchText("b");
    test.desk.browser.reset();
    test.desk.settle();
    CHECK(test.desk.background.pending() == 0);
}

TEST_CASE("without a search text the whole long list is there at once")
{
    LongList test;
    auto const before = *test.model().items;
    for (char const* text : { "b", "b2", "b23" }) {
        test.model().setSearchText(text);
        test.desk.settle();
    }
    test.model().setSearchText("b2399");
    test.model().setSearchText(" ");
    CHECK(*test.model().items == before);
    test.desk.settle();
    CHECK(*test.model().items == before);
    test.model().setSearchText("b2399");
    test.desk.settle();
    CHECK(test.shown() == 10);
    test.model().setSearchText("");
    CHECK(*test.model().items == before);
}

TEST_CASE("the whole long list comes in the order that was chosen during the search")
{
    LongList test;
    test.model().setSearchText("b2399");
    test.desk.settle();
    test.model().setAscending(false);
    test.desk.settle();
    test.model().setSearchText("");
    test.desk.settle();
    CHECK(*test.model().items == expected(test.model(), test.desk.textOrder));
    CHECK(test.desk.names().front() == "b23999.jpg");
}

TEST_CASE("a search that is given up leaves the cursor and the marks as they are")
{
    LongList test;
    test.model().openViewer(7);
    test.model().closeViewer();
    test.model().toggle(7);
    test.model().setSearchText("b");
    CHECK(*test.model().cursor == 7U);
    test.model().setSearchText("");
    test.desk.settle();
    CHECK(*test.model().cursor == 7U);
    CHECK(test.desk.marked() == Names { "a7.jpg" });
}

TEST_CASE("whatever is typed and done meanwhile, a long list ends as the rules say")
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        CAPTURE(seed);
        LongList test;
        Typist typist(seed);
        for (int step = 0; step < 40; ++step)
            typist.act(test);
        auto const& model = test.model();
        auto const photoAt = [&](std::optional<std::size_t> index) {
            return index ? std::optional((*model.items)[*index]) : std::nullopt;
        };
        auto const inViewer = photoAt(*model.viewerIndex);
        auto const atCursor = photoAt(*model.cursor);
        test.desk.settle();
        test.desk.loop.advance(1s);
        auto const visible = expected(model, test.desk.textOrder);
        CHECK(*model.items == visible);
        for (auto const& [photo, index] :
            { std::pair(inViewer, *model.viewerIndex), std::pair(atCursor, *model.cursor) })
            CHECK((photo && std::ranges::count(visible, *photo) > 0 ? photo : std::nullopt)
                == photoAt(index));
    }
}
