#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

constexpr ClickModifiers plain;
constexpr ClickModifiers command { .command = true };
constexpr ClickModifiers shift { .shift = true };

using Index = std::optional<std::size_t>;

Names numbered(int count)
{
    Names names;
    for (int i = 1; i <= count; ++i)
        names.push_back(std::to_string(i) + ".jpg");
    return names;
}

struct Gallery : Desk {
    explicit Gallery(int count = 10) { open("/b", numbered(count)); }
};

} // namespace

TEST_CASE("a plain click opens the viewer and marks nothing")
{
    Gallery desk;
    desk.model().click(3, plain);
    CHECK(*desk.model().viewerIndex == Index(3));
    CHECK(*desk.model().cursor == Index(3));
    CHECK(desk.model().anchor() == Index(3));
    CHECK(desk.marked().empty());
    CHECK(desk.window.focusCount == 2); // once when the folder was shown
}

TEST_CASE("a click with ⌘ marks, the next one unmarks")
{
    Gallery desk;
    desk.model().click(3, command);
    CHECK(desk.marked() == Names { "4.jpg" });
    CHECK(*desk.model().cursor == Index(3));
    CHECK(desk.model().anchor() == Index(3));
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    desk.model().click(3, command);
    CHECK(desk.marked().empty());
    CHECK(*desk.model().cursor == Index(3));
}

TEST_CASE("⌘ comes before ⇧")
{
    Gallery desk;
    desk.model().click(1, command);
    desk.model().click(4, { .command = true, .shift = true });
    CHECK(desk.marked() == Names { "2.jpg", "5.jpg" });
    CHECK(desk.model().anchor() == Index(4));
}

TEST_CASE("a click with ⇧ adds the range from the anchor, in either direction")
{
    Gallery desk;
    desk.model().click(4, command);
    desk.model().click(6, shift);
    CHECK(desk.marked() == Names { "5.jpg", "6.jpg", "7.jpg" });
    CHECK(desk.model().anchor() == Index(4));
    CHECK(*desk.model().cursor == Index(6));
    desk.model().click(3, shift);
    CHECK(desk.marked() == Names { "4.jpg", "5.jpg", "6.jpg", "7.jpg" });
    CHECK_FALSE(desk.model().viewerIndex->has_value());
}

TEST_CASE("a range begins at the cursor without an anchor, at the click without either")
{
    Gallery desk;
    desk.model().click(8, shift);
    CHECK(desk.marked() == Names { "9.jpg" });
    CHECK_FALSE(desk.model().anchor().has_value());
    desk.model().click(6, shift); // from the cursor, which the last click moved
    CHECK(desk.marked() == Names { "7.jpg", "8.jpg", "9.jpg" });
}

TEST_CASE("a click outside the photos does nothing at all")
{
    Gallery desk(2);
    auto const focused = desk.window.focusCount;
    for (auto const modifiers : { plain, command, shift })
        desk.model().click(2, modifiers);
    CHECK(desk.window.focusCount == focused);
    CHECK_FALSE(desk.model().cursor->has_value());
    CHECK(desk.marked().empty());
}

TEST_CASE("clicks work without a window")
{
    Gallery desk;
    desk.model().setWindow(nullptr);
    desk.model().click(1, command);
    CHECK(desk.marked() == Names { "2.jpg" });
}

TEST_CASE("marking all marks what is visible and drops what the filter hides")
{
    Gallery desk(12);
    desk.model().toggle(1);
    desk.model().setSearchText("1");
    desk.model().selectAll();
    CHECK(desk.marked() == Names { "1.jpg", "10.jpg", "11.jpg", "12.jpg" });
    desk.model().setSearchText("");
    CHECK(desk.model().items->size() == 12);
    CHECK(desk.marked() == Names { "1.jpg", "10.jpg", "11.jpg", "12.jpg" });
}

TEST_CASE("inverting marks the visible ones that were not, and drops hidden ones")
{
    Gallery desk(12);
    desk.model().toggle(1);
    desk.model().toggle(0);
    desk.model().setSearchText("1");
    desk.model().invertSelection();
    CHECK(desk.marked() == Names { "10.jpg", "11.jpg", "12.jpg" });
    desk.model().invertSelection();
    CHECK(desk.marked() == Names { "1.jpg" });
}

TEST_CASE("observers hear of every change of the marks")
{
    Gallery desk;
    desk.loop.settle();
    int heard = 0;
    auto const observation = desk.model().observe([&] { ++heard; });
    auto const after = [&](auto const& act) {
        heard = 0;
        act();
        desk.loop.settle();
        return heard;
    };
    CHECK(after([&] { desk.model().toggle(1); }) == 1);
    CHECK(after([&] { desk.model().click(3, shift); }) == 1);
    CHECK(after([&] { desk.model().selectAll(); }) == 1);
    CHECK(after([&] { desk.model().invertSelection(); }) == 1);
}

TEST_CASE("without a cursor, → goes to the first photo and ← to the last")
{
    Gallery desk;
    SUBCASE("→")
    {
        desk.model().moveCursor(+1, Extend::no);
        CHECK(*desk.model().cursor == Index(0));
        CHECK(desk.model().anchor() == Index(0));
    }
    SUBCASE("←")
    {
        desk.model().moveCursor(-1, Extend::no);
        CHECK(*desk.model().cursor == Index(9));
    }
    SUBCASE("in an empty gallery neither does anything")
    {
        desk.model().setSearchText("nothing");
        desk.model().moveCursor(+1, Extend::no);
        desk.model().moveCursor(-1, Extend::yes);
        CHECK_FALSE(desk.model().cursor->has_value());
        CHECK_FALSE(desk.model().anchor().has_value());
    }
}

TEST_CASE("⇧→ twice from the third photo marks three, ⇧← then changes nothing")
{
    Gallery desk;
    desk.model().moveCursor(+1, Extend::no);
    desk.model().moveCursor(+1, Extend::no);
    desk.model().moveCursor(+1, Extend::no);
    REQUIRE(*desk.model().cursor == Index(2));
    desk.model().moveCursor(+1, Extend::yes);
    desk.model().moveCursor(+1, Extend::yes);
    CHECK(desk.marked() == Names { "3.jpg", "4.jpg", "5.jpg" });
    desk.model().moveCursor(-1, Extend::yes);
    CHECK(desk.marked() == Names { "3.jpg", "4.jpg", "5.jpg" });
    CHECK(*desk.model().cursor == Index(3));
    CHECK(desk.model().anchor() == Index(2));
}

TEST_CASE("a range of the keyboard without an anchor begins at the cursor, or where it appears")
{
    Gallery desk;
    SUBCASE("at the cursor")
    {
        desk.model().openViewer(4);
        desk.model().closeViewer();
        desk.model().moveCursor(+1, Extend::yes);
        CHECK(desk.marked() == Names { "5.jpg", "6.jpg" });
        CHECK(desk.model().anchor() == Index(4));
    }
    SUBCASE("where the cursor appears")
    {
        desk.model().moveCursor(+3, Extend::yes);
        CHECK(desk.marked() == Names { "3.jpg" });
        CHECK(desk.model().anchor() == Index(2));
    }
}

TEST_CASE("a plain movement sets the start of the next range anew")
{
    Gallery desk;
    desk.model().click(0, command);
    desk.model().moveCursor(+1, Extend::no);
    desk.model().moveCursor(+1, Extend::no);
    desk.model().click(4, shift);
    CHECK(desk.marked() == Names { "1.jpg", "3.jpg", "4.jpg", "5.jpg" });
}

TEST_CASE("actions work on the photo in the viewer, whatever is marked")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().toggle(1);
    desk.model().openViewer(5);
    CHECK(desk.model().actionTargets() == std::vector { FileUrl("/b/6.jpg") });
}

TEST_CASE("actions work on the marked photos that are visible, in their order")
{
    Gallery desk(12);
    for (std::size_t index : { 11U, 0U, 10U, 4U })
        desk.model().toggle(index);
    desk.model().moveCursor(+1, Extend::no);
    desk.model().setSearchText("1");
    desk.model().setAscending(false);
    CHECK(desk.model().actionTargets()
        == std::vector { FileUrl("/b/12.jpg"), FileUrl("/b/11.jpg"), FileUrl("/b/1.jpg") });
}

TEST_CASE("if all marked photos are hidden, actions work on nothing, not on the cursor")
{
    Gallery desk;
    desk.model().toggle(1);
    desk.model().moveCursor(+1, Extend::no);
    desk.model().setSearchText("1");
    REQUIRE(desk.model().cursor->has_value());
    CHECK(desk.model().actionTargets().empty());
}

TEST_CASE("with nothing marked actions work on the photo under the cursor, else on nothing")
{
    Gallery desk;
    CHECK(desk.model().actionTargets().empty());
    desk.model().moveCursor(-1, Extend::no);
    CHECK(desk.model().actionTargets() == std::vector { FileUrl("/b/10.jpg") });
}
