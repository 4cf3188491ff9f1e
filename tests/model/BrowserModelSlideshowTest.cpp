#include "support/Desk.h"
#include <doctest/doctest.h>
#include <set>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

using Index = std::optional<std::size_t>;
constexpr auto crossFade = ViewerTransition::crossFade;

/// A gallery of photos that are named after their places, with a slide every four seconds.
struct Gallery : Desk {
    explicit Gallery(std::size_t count = 10)
    {
        Names all;
        for (std::size_t i = 0; i < count; ++i)
            all.push_back(std::string(i < 10 ? "0" : "") + std::to_string(i) + ".jpg");
        open("/b", all);
    }

    Index viewer() { return *model().viewerIndex; }
    Index cursor() { return *model().cursor; }
    bool runs() { return *model().isSlideshow; }
    bool isPaused() { return *model().isSlideshowPaused; }
    bool isStill() { return *model().viewerTransition == ViewerTransition::none; }

    void mark(std::initializer_list<std::size_t> indices)
    {
        for (auto const index : indices)
            model().toggle(index);
    }

    /// Starts a show of the whole list with the photo at `index`.
    void showFrom(std::size_t index)
    {
        model().openViewer(index);
        model().startSlideshow();
    }

    void trashShown()
    {
        model().trashTargets();
        settle();
    }

    /// What a whole round shows, from the photo shown now on.
    std::vector<std::size_t> round(std::size_t count)
    {
        std::vector<std::size_t> shown;
        for (std::size_t i = 0; i < count; ++i) {
            shown.push_back(viewer().value());
            loop.advance(4s);
        }
        return shown;
    }
};

} // namespace

TEST_CASE("an empty gallery has no slideshow")
{
    Desk desk;
    desk.open("/b", {});
    desk.model().startSlideshow();
    CHECK_FALSE(*desk.model().isSlideshow);
    CHECK_FALSE(desk.window.fullScreen);
    CHECK(desk.window.pointerHidings == 0);
    CHECK_FALSE(desk.type("d"));
}

TEST_CASE("a slideshow goes through all photos, one every interval")
{
    Gallery desk(3);
    desk.model().startSlideshow();
    CHECK(desk.runs());
    CHECK_FALSE(desk.isPaused());
    CHECK(desk.viewer() == Index(0));
    CHECK(desk.isStill());
    desk.loop.advance(3'999ms);
    CHECK(desk.viewer() == Index(0));
    desk.loop.advance(1ms);
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.cursor() == Index(1));
    CHECK(*desk.model().viewerTransition == crossFade);
    desk.loop.advance(4s);
    CHECK(desk.viewer() == Index(2));
}

TEST_CASE("with one photo marked the slideshow shows the whole list")
{
    Gallery desk(4);
    desk.mark({ 2 });
    desk.model().startSlideshow();
    CHECK(desk.round(5) == std::vector<std::size_t> { 0, 1, 2, 3, 0 });
}

TEST_CASE("three photos marked out of ten, cursor beside them: it starts at the first marked one")
{
    Gallery desk;
    desk.mark({ 7, 2, 5 });
    desk.model().moveCursor(+1, Extend::no);
    CHECK(desk.cursor() == Index(0));
    desk.model().startSlideshow();
    CHECK(desk.round(4) == std::vector<std::size_t> { 2, 5, 7, 2 });
}

TEST_CASE("the slideshow starts at the photo in the viewer, else at the cursor")
{
    Gallery desk;
    desk.model().click(4, { .command = true });
    desk.model().startSlideshow();
    CHECK(desk.viewer() == Index(4));
    desk.model().closeViewer();
    desk.model().openViewer(6);
    desk.model().startSlideshow();
    CHECK(desk.viewer() == Index(6));
}

TEST_CASE("a photo in the viewer that is not marked gives way to the first marked one")
{
    Gallery desk;
    desk.mark({ 3, 8 });
    desk.showFrom(5);
    CHECK(desk.viewer() == Index(3));
}

TEST_CASE("shuffled, the photo in the viewer comes first if it belongs to the show")
{
    for (int times = 0; times < 20; ++times) {
        Gallery desk;
        for (int i = 0; i < times; ++i)
            (void)desk.random.next();
        desk.mark({ 1, 3, 5, 8 });
        desk.model().setSlideshowShuffle(true);
        desk.showFrom(5);
        CHECK(desk.viewer() == Index(5));
        auto const shown = desk.round(4);
        CHECK(std::set(shown.begin(), shown.end()) == std::set<std::size_t> { 1, 3, 5, 8 });
        CHECK(desk.viewer() == Index(5));
    }
}

TEST_CASE("shuffled, a show that the cursor is no part of starts anywhere")
{
    Gallery desk;
    desk.mark({ 1, 3, 5 });
    desk.model().click(0, { .command = true });
    desk.model().toggle(0);
    desk.model().setSlideshowShuffle(true);
    std::set<std::size_t> starts;
    for (int i = 0; i < 40; ++i) {
        desk.model().startSlideshow();
        starts.insert(desk.viewer().value());
        desk.model().stopSlideshow();
        desk.model().closeViewer();
        desk.model().click(0, { .command = true });
        desk.model().toggle(0);
    }
    CHECK(starts == std::set<std::size_t> { 1, 3, 5 });
}

// Of the 6 orders behind the first photo: 5 degrees of freedom, one of a thousand passes 20.5.
TEST_CASE("each start shuffles anew, every order as likely as the others")
{
    constexpr int rounds = 3'000;
    Gallery desk(4);
    desk.model().setSlideshowShuffle(true);
    std::map<std::vector<std::size_t>, int> counts;
    for (int i = 0; i < rounds; ++i) {
        desk.showFrom(2);
        std::vector<std::size_t> order;
        for (int step = 0; step < 3; ++step) {
            desk.model().stepViewer(+1);
            order.push_back(desk.viewer().value());
        }
        ++counts[order];
        desk.model().closeViewer();
    }
    REQUIRE(counts.size() == 6);
    constexpr double expected = rounds / 6.0;
    double chiSquare = 0;
    for (auto const& [order, count] : counts)
        chiSquare += (count - expected) * (count - expected) / expected;
    CHECK(chiSquare < 20.5);
}

TEST_CASE("after the last photo comes the first, and a step back from the first goes to the last")
{
    Gallery desk(3);
    desk.showFrom(2);
    desk.loop.advance(4s);
    CHECK(desk.viewer() == Index(0));
    desk.press(keyCodes::left);
    CHECK(desk.viewer() == Index(2));
    CHECK(desk.cursor() == Index(2));
    CHECK(desk.isStill());
    desk.press(keyCodes::right);
    CHECK(desk.viewer() == Index(0));
    CHECK(desk.window.beepCount == 0);
    CHECK(desk.runs());
}

TEST_CASE("a show of one photo shows it again and again")
{
    Gallery desk(1);
    desk.model().startSlideshow();
    desk.loop.advance(60s);
    CHECK(desk.viewer() == Index(0));
    CHECK(desk.runs());
    desk.press(keyCodes::left);
    CHECK(desk.viewer() == Index(0));
}

TEST_CASE("after a step by hand the full interval starts again")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.loop.advance(3'900ms);
    desk.press(keyCodes::down);
    CHECK(desk.viewer() == Index(1));
    desk.loop.advance(3'900ms);
    CHECK(desk.viewer() == Index(1));
    desk.loop.advance(100ms);
    CHECK(desk.viewer() == Index(2));
}

TEST_CASE("Space pauses, and going on shows the next photo at once")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.loop.advance(1s);
    CHECK(desk.press(keyCodes::space));
    CHECK(desk.isPaused());
    CHECK(desk.runs());
    desk.loop.advance(60s);
    CHECK(desk.viewer() == Index(0));
    CHECK(desk.press(keyCodes::space));
    CHECK_FALSE(desk.isPaused());
    CHECK(desk.viewer() == Index(1));
    CHECK(*desk.model().viewerTransition == crossFade);
    desk.loop.advance(3'999ms);
    CHECK(desk.viewer() == Index(1));
    desk.loop.advance(1ms);
    CHECK(desk.viewer() == Index(2));
}

TEST_CASE("steps by hand work while paused; the clock stays off")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.press(keyCodes::space);
    desk.press(keyCodes::right);
    desk.press(keyCodes::right);
    CHECK(desk.viewer() == Index(2));
    desk.loop.advance(60s);
    CHECK(desk.viewer() == Index(2));
    CHECK(desk.isPaused());
}

TEST_CASE("without a slideshow there is nothing to pause")
{
    Gallery desk;
    desk.model().openViewer(1);
    desk.model().toggleSlideshowPause();
    CHECK_FALSE(desk.isPaused());
    CHECK_FALSE(desk.runs());
    desk.loop.advance(60s);
    CHECK(desk.viewer() == Index(1));
}

TEST_CASE("another interval counts from the next restart on, not for the wait under way")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.model().setSlideshowInterval(10);
    desk.loop.advance(8s);
    CHECK(desk.viewer() == Index(2));
    SUBCASE("a step by hand")
    {
        desk.press(keyCodes::right);
    }
    SUBCASE("a pause")
    {
        desk.press(keyCodes::space);
        desk.press(keyCodes::space);
    }
    CHECK(desk.viewer() == Index(3));
    desk.loop.advance(9'999ms);
    CHECK(desk.viewer() == Index(3));
    desk.loop.advance(1ms);
    CHECK(desk.viewer() == Index(4));
}

TEST_CASE("D starts the slideshow and stops it; the viewer stays on the photo last shown")
{
    Gallery desk;
    CHECK(desk.type("d"));
    CHECK(desk.runs());
    desk.loop.advance(4s);
    CHECK(desk.type("D"));
    CHECK_FALSE(desk.runs());
    CHECK(desk.viewer() == Index(1));
    desk.loop.advance(60s);
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.type("d"));
    CHECK(desk.runs());
    CHECK(desk.viewer() == Index(1));
}

TEST_CASE("D stops a paused slideshow too")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.press(keyCodes::space);
    desk.type("d");
    CHECK_FALSE(desk.runs());
    CHECK_FALSE(desk.isPaused());
}

TEST_CASE("Escape and Return end the slideshow and show the gallery with the cursor on its photo")
{
    for (int code : { keyCodes::escape, keyCodes::returnKey, keyCodes::keypadEnter }) {
        CAPTURE(code);
        Gallery desk;
        desk.model().startSlideshow();
        desk.loop.advance(8s);
        CHECK(desk.press(code));
        CHECK_FALSE(desk.runs());
        CHECK_FALSE(desk.viewer().has_value());
        CHECK(desk.cursor() == Index(2));
        CHECK_FALSE(desk.window.fullScreen);
        desk.loop.advance(60s);
        CHECK_FALSE(desk.viewer().has_value());
    }
}

TEST_CASE("during a slideshow Home and End are ours and do nothing, paused or not")
{
    Gallery desk;
    desk.showFrom(4);
    for (int i = 0; i < 2; ++i) {
        CHECK(desk.press(keyCodes::home));
        CHECK(desk.press(keyCodes::end));
        CHECK(desk.viewer() == Index(4));
        CHECK(desk.cursor() == Index(4));
        CHECK(desk.runs());
        desk.press(keyCodes::space);
    }
}

TEST_CASE("during a slideshow X marks the photo and stays on it")
{
    Gallery desk;
    desk.model().startSlideshow();
    CHECK(desk.type("x"));
    CHECK(desk.viewer() == Index(0));
    CHECK(desk.marked() == Names { "00.jpg" });
    CHECK(desk.type("x"));
    CHECK(desk.marked().empty());
}

TEST_CASE("marking photos during a slideshow does not change what it shows")
{
    Gallery desk(4);
    desk.model().startSlideshow();
    desk.mark({ 2, 3 });
    CHECK(desk.round(4) == std::vector<std::size_t> { 0, 1, 2, 3 });
}

TEST_CASE("the slideshow enters full screen and leaves it when it ends")
{
    Gallery desk;
    desk.model().startSlideshow();
    CHECK(desk.window.fullScreen);
    desk.model().stopSlideshow();
    CHECK_FALSE(desk.window.fullScreen);
}

TEST_CASE("a window that was in full screen before stays there")
{
    Gallery desk;
    desk.window.fullScreen = true;
    desk.model().startSlideshow();
    CHECK(desk.window.fullScreen);
    desk.model().stopSlideshow();
    CHECK(desk.window.fullScreen);
}

TEST_CASE("full screen that people left or entered themselves is not touched at the end")
{
    Gallery desk;
    desk.model().startSlideshow();
    SUBCASE("left")
    {
        desk.type("f");
        desk.model().stopSlideshow();
        CHECK_FALSE(desk.window.fullScreen);
    }
    SUBCASE("entered for the next show")
    {
        desk.model().stopSlideshow();
        desk.window.fullScreen = true;
        desk.model().startSlideshow();
        desk.model().stopSlideshow();
        CHECK(desk.window.fullScreen);
    }
}

TEST_CASE("a slideshow that starts anew while it runs still leaves full screen at its end")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.loop.advance(4s);
    desk.model().startSlideshow();
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.screenAwake.holders() == 1);
    desk.loop.advance(4s);
    CHECK(desk.viewer() == Index(2));
    desk.model().stopSlideshow();
    CHECK_FALSE(desk.window.fullScreen);
}

TEST_CASE("a slideshow runs without a window, and its window may go")
{
    Gallery desk;
    SUBCASE("no window")
    {
        desk.model().setWindow(nullptr);
        desk.model().startSlideshow();
    }
    SUBCASE("it goes")
    {
        desk.model().startSlideshow();
        desk.model().setWindow(nullptr);
    }
    desk.loop.advance(4s);
    CHECK(desk.viewer() == Index(1));
    desk.model().stopSlideshow();
    CHECK_FALSE(desk.runs());
}

TEST_CASE("the pointer is hidden once, when the slideshow starts")
{
    Gallery desk;
    desk.model().startSlideshow();
    CHECK(desk.window.pointerHidings == 1);
    desk.loop.advance(20s);
    desk.press(keyCodes::space);
    desk.press(keyCodes::space);
    CHECK(desk.window.pointerHidings == 1);
}

TEST_CASE("the screen is kept awake while the slideshow runs, not while it is paused")
{
    Gallery desk;
    CHECK_FALSE(desk.screenAwake.isKeptAwake());
    desk.model().startSlideshow();
    CHECK(desk.screenAwake.holders() == 1);
    desk.loop.advance(20s);
    desk.press(keyCodes::right);
    CHECK(desk.screenAwake.holders() == 1);
    CHECK(desk.screenAwake.reasons == Names { "Diashow" });
    desk.press(keyCodes::space);
    CHECK_FALSE(desk.screenAwake.isKeptAwake());
    desk.press(keyCodes::right);
    CHECK_FALSE(desk.screenAwake.isKeptAwake());
    desk.press(keyCodes::space);
    CHECK(desk.screenAwake.holders() == 1);
    desk.model().stopSlideshow();
    CHECK_FALSE(desk.screenAwake.isKeptAwake());
}

TEST_CASE("nothing keeps the screen awake after the program ended in the middle of a show")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.browser.reset();
    CHECK_FALSE(desk.screenAwake.isKeptAwake());
    desk.loop.advance(60s);
}

TEST_CASE("the next two photos of the order are prefetched, around its end, nothing backwards")
{
    Gallery desk;
    desk.mark({ 1, 4, 6, 9 });
    desk.showFrom(4);
    CHECK(desk.prefetch.next() == Names { "06.jpg", "09.jpg" });
    desk.loop.advance(4s);
    CHECK(desk.prefetch.requests.back().shown.name() == "06.jpg");
    CHECK(desk.prefetch.next() == Names { "09.jpg", "01.jpg" });
    desk.press(keyCodes::left);
    CHECK(desk.prefetch.next() == Names { "06.jpg", "09.jpg" });
    desk.press(keyCodes::space);
    desk.press(keyCodes::space);
    CHECK(desk.prefetch.next() == Names { "09.jpg", "01.jpg" });
}

TEST_CASE("re-sorting, filtering, other folders and a new scan end the slideshow")
{
    Gallery desk;
    desk.showFrom(3);
    SUBCASE("sorting")
    {
        desk.model().setAscending(false);
        CHECK(desk.viewer() == Index(6));
    }
    SUBCASE("by another key")
    {
        desk.model().setSortKey(SortKey::size);
        CHECK(desk.viewer().has_value());
    }
    SUBCASE("filtering")
    {
        desk.model().setSearchText("3");
        CHECK(desk.viewer() == Index(0));
    }
    SUBCASE("another folder")
    {
        desk.open("/c", { "x.jpg" });
        CHECK_FALSE(desk.viewer().has_value());
    }
    SUBCASE("a scan")
    {
        desk.model().reload();
        desk.settle();
        CHECK(desk.viewer() == Index(3));
    }
    CHECK_FALSE(desk.runs());
    CHECK_FALSE(desk.window.fullScreen);
    CHECK_FALSE(desk.screenAwake.isKeptAwake());
    CHECK(desk.isStill());
    auto const shown = desk.viewer();
    desk.loop.advance(60s);
    CHECK(desk.viewer() == shown);
}

TEST_CASE("photos that leave the list during a show end it, so that no index is out of range")
{
    Gallery desk(3);
    desk.showFrom(1);
    SUBCASE("the photo shown, by hand")
    {
        desk.trashShown();
        CHECK(desk.viewer() == Index(1));
    }
    SUBCASE("those behind it")
    {
        desk.model().removeItems({ FileUrl("/b/02.jpg") });
        CHECK(desk.viewer() == Index(1));
    }
    SUBCASE("all of them")
    {
        desk.model().removeItems(
            { FileUrl("/b/00.jpg"), FileUrl("/b/01.jpg"), FileUrl("/b/02.jpg") });
        CHECK_FALSE(desk.viewer().has_value());
    }
    CHECK_FALSE(desk.runs());
    desk.loop.advance(60s);
    CHECK_FALSE(desk.runs());
    CHECK(desk.viewer().value_or(0) < 2);
}

TEST_CASE("steps by hand, opening and closing the viewer are no cross-fades")
{
    Gallery desk;
    auto const afterFade = [&] {
        desk.showFrom(2);
        desk.loop.advance(4s);
        CHECK_FALSE(desk.isStill());
    };
    afterFade();
    desk.press(keyCodes::right);
    CHECK(desk.isStill());
    afterFade();
    desk.model().closeViewer();
    CHECK(desk.isStill());
    afterFade();
    desk.model().openViewer(0);
    CHECK(desk.isStill());
}

TEST_CASE("observers hear of an advance once, with the photo and how to come to it")
{
    Gallery desk;
    desk.model().startSlideshow();
    desk.loop.settle();
    int changes = 0;
    auto const observation = desk.model().observe([&] {
        ++changes;
        CHECK(desk.viewer() == Index(1));
        CHECK(desk.cursor() == Index(1));
        CHECK_FALSE(desk.isStill());
    });
    desk.loop.advance(4s);
    CHECK(changes == 1);
}
