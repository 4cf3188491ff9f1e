#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Index = std::optional<std::size_t>;

struct Gallery : Desk {
    explicit Gallery(
        Names const& names = { "1.jpg", "2.jpg", "3.jpg", "4.jpg", "5.jpg", "6.jpg", "7.jpg" })
    {
        open("/b", names);
    }
    Index cursor() { return *model().cursor; }
    Index viewer() { return *model().viewerIndex; }
};

} // namespace

TEST_CASE("keys of other windows, of sheets and under sheets are not ours")
{
    Gallery desk;
    FakeMainWindow other;
    CHECK_FALSE(desk.model().handleKey({ .keyCode = keyCodes::right, .window = &other }));
    CHECK_FALSE(desk.model().handleKey({ .keyCode = keyCodes::right }));
    CHECK_FALSE(desk.press({ .keyCode = keyCodes::right, .windowIsSheet = true }));
    CHECK_FALSE(desk.press({ .keyCode = keyCodes::right, .windowHasSheet = true }));
    CHECK_FALSE(desk.cursor().has_value());
    desk.model().setWindow(nullptr);
    CHECK_FALSE(desk.model().handleKey({ .keyCode = keyCodes::right }));
}

TEST_CASE("while text is typed no key is ours")
{
    Gallery desk;
    desk.model().moveCursor(+1, Extend::no);
    CHECK_FALSE(desk.press({ .characters = "x", .focus = KeyFocus::textView }));
    CHECK_FALSE(desk.press({ .characters = "a", .command = true, .focus = KeyFocus::textView }));
    CHECK_FALSE(desk.press({ .keyCode = keyCodes::escape, .focus = KeyFocus::textView }));
    CHECK(desk.marked().empty());
}

TEST_CASE("the folder tree keeps its arrows, but no other key")
{
    Gallery desk;
    for (int code : { keyCodes::left, keyCodes::right, keyCodes::up, keyCodes::down })
        CHECK_FALSE(desk.press({ .keyCode = code, .focus = KeyFocus::tableView }));
    CHECK_FALSE(desk.cursor().has_value());
    CHECK(desk.press({ .keyCode = keyCodes::home, .focus = KeyFocus::tableView }));
    CHECK(desk.cursor() == Index(0));
}

TEST_CASE("an empty gallery has no keys but those with ⌘")
{
    Gallery desk(Names {});
    for (int code : { 36, 49, 53, 76, 115, 119, 123, 124, 125, 126 })
        CHECK_FALSE(desk.press(code));
    for (char const* const text : { "x", "s", "d", "+", "=", "-" })
        CHECK_FALSE(desk.type(text));
    CHECK(*desk.model().thumbSize == 170);
    CHECK(desk.press({ .characters = "a", .command = true }));
    CHECK(desk.press({ .characters = "A", .command = true, .shift = true }));
}

TEST_CASE("⌘A marks all, ⇧⌘A none, in the viewer too")
{
    Gallery desk({ "1.jpg", "2.jpg" });
    SUBCASE("in the gallery") { }
    SUBCASE("in the viewer")
    {
        desk.model().openViewer(1);
    }
    CHECK(desk.press({ .characters = "a", .command = true }));
    CHECK(desk.marked() == Names { "1.jpg", "2.jpg" });
    CHECK(desk.press({ .characters = "A", .command = true, .shift = true }));
    CHECK(desk.marked().empty());
    CHECK_FALSE(desk.press({ .characters = "c", .command = true }));
    CHECK_FALSE(desk.press({ .keyCode = keyCodes::up, .command = true }));
}

TEST_CASE("⌥→ and ⌃→ are not handled")
{
    Gallery desk;
    CHECK_FALSE(desk.press({ .keyCode = keyCodes::right, .option = true }));
    CHECK_FALSE(desk.press({ .keyCode = keyCodes::right, .control = true }));
    CHECK_FALSE(desk.cursor().has_value());
}

TEST_CASE("Return, Space and Enter open the photo under the cursor, else the first")
{
    for (int code : { keyCodes::returnKey, keyCodes::space, keyCodes::keypadEnter }) {
        CAPTURE(code);
        Gallery desk;
        CHECK(desk.press(code));
        CHECK(desk.viewer() == Index(0));
        desk.model().closeViewer();
        desk.press(keyCodes::end);
        CHECK(desk.press(code));
        CHECK(desk.viewer() == Index(6));
    }
}

TEST_CASE("Escape unmarks all; with nothing marked it is passed on")
{
    Gallery desk;
    CHECK_FALSE(desk.press(keyCodes::escape));
    desk.model().toggle(1);
    desk.model().toggle(2);
    CHECK(desk.press(keyCodes::escape));
    CHECK(desk.marked().empty());
    CHECK_FALSE(desk.press(keyCodes::escape));
}

TEST_CASE("Home and End move the cursor only")
{
    Gallery desk;
    desk.model().click(2, { .command = true });
    CHECK(desk.press(keyCodes::end, true));
    CHECK(desk.cursor() == Index(6));
    CHECK(desk.press(keyCodes::home));
    CHECK(desk.cursor() == Index(0));
    CHECK(desk.model().anchor() == Index(2));
    CHECK(desk.marked() == Names { "3.jpg" });
}

TEST_CASE("arrows move by a photo or a row of the grid, with ⇧ they mark")
{
    Gallery desk;
    desk.model().setColumns(3);
    CHECK(desk.press(keyCodes::right));
    CHECK(desk.cursor() == Index(0));
    CHECK(desk.press(keyCodes::down));
    CHECK(desk.cursor() == Index(3));
    CHECK(desk.press(keyCodes::up));
    CHECK(desk.cursor() == Index(0));
    CHECK(desk.press(keyCodes::up)); // on the first row
    CHECK(desk.cursor() == Index(0));
    CHECK(desk.press(keyCodes::left));
    CHECK(desk.cursor() == Index(0));
    CHECK(desk.press(keyCodes::down, true));
    CHECK(desk.marked() == Names { "1.jpg", "2.jpg", "3.jpg", "4.jpg" });
}

TEST_CASE("↓ on the last row and → on the last photo stay")
{
    Gallery desk;
    desk.model().setColumns(3);
    desk.press(keyCodes::end);
    CHECK(desk.press(keyCodes::right));
    CHECK(desk.cursor() == Index(6));
    CHECK(desk.press(keyCodes::down));
    CHECK(desk.cursor() == Index(6));
    desk.press(keyCodes::left);
    CHECK(desk.press(keyCodes::down)); // the place below it is empty
    CHECK(desk.cursor() == Index(5));
}

TEST_CASE(
    "without a cursor ↓ goes to the end of the first row, in a shorter list to the last photo")
{
    Gallery desk;
    desk.model().setColumns(5);
    CHECK(desk.press(keyCodes::down));
    CHECK(desk.cursor() == Index(4));
    Gallery shorter({ "1.jpg", "2.jpg" });
    shorter.model().setColumns(5);
    CHECK(shorter.press(keyCodes::down));
    CHECK(shorter.cursor() == Index(1));
}

TEST_CASE("X and S mark and unmark the photo under the cursor")
{
    for (char const* const key : { "x", "X", "s", "S" }) {
        CAPTURE(key);
        Gallery desk;
        CHECK(desk.type(key)); // ours even without a cursor
        CHECK(desk.marked().empty());
        desk.press(keyCodes::right);
        CHECK(desk.type(key));
        CHECK(desk.marked() == Names { "1.jpg" });
        CHECK(desk.type(key));
        CHECK(desk.marked().empty());
    }
}

TEST_CASE("+ and - change the size of the cells by 30 points, within 80 and 400")
{
    Gallery desk;
    CHECK(desk.type("+"));
    CHECK(*desk.model().thumbSize == 200);
    CHECK(desk.type("="));
    CHECK(*desk.model().thumbSize == 230);
    CHECK(desk.type("-"));
    CHECK(*desk.model().thumbSize == 200);
    for (int i = 0; i < 10; ++i)
        desk.type("+");
    CHECK(*desk.model().thumbSize == 400);
    for (int i = 0; i < 20; ++i)
        desk.type("-");
    CHECK(*desk.model().thumbSize == 80);
    CHECK(*desk.preferences.number("thumbSize") == 80);
}

TEST_CASE("Return, Escape, Enter and Space close the viewer; the cursor is on its photo")
{
    for (int code : { 36, 53, 76, 49 }) {
        CAPTURE(code);
        Gallery desk;
        desk.model().toggle(0);
        desk.model().openViewer(2);
        desk.press(keyCodes::right);
        CHECK(desk.press(code));
        CHECK_FALSE(desk.viewer().has_value());
        CHECK(desk.cursor() == Index(3));
        CHECK(desk.marked() == Names { "1.jpg" });
    }
}

TEST_CASE("in the viewer arrows step, Home and End go to the ends")
{
    Gallery desk;
    desk.model().openViewer(2);
    struct Step {
        int code;
        unsigned index;
    };
    for (auto const& step : { Step { 124, 3 }, Step { 125, 4 }, Step { 123, 3 }, Step { 126, 2 },
             Step { 115, 0 }, Step { 119, 6 } }) {
        CAPTURE(step.code);
        CHECK(desk.press(step.code));
        CHECK(desk.viewer() == Index(step.index));
        CHECK(desk.cursor() == Index(step.index));
    }
    CHECK(desk.window.beepCount == 0);
}

TEST_CASE("a step beyond the first or last photo beeps and stays")
{
    Gallery desk({ "1.jpg", "2.jpg" });
    desk.model().openViewer(1);
    CHECK(desk.press(keyCodes::right));
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.window.beepCount == 1);
    desk.press(keyCodes::left);
    CHECK(desk.press(keyCodes::left));
    CHECK(desk.viewer() == Index(0));
    CHECK(desk.window.beepCount == 2);
    desk.model().closeViewer();
    desk.model().stepViewer(+1);
    CHECK(desk.window.beepCount == 2);
    CHECK_FALSE(desk.viewer().has_value());
}

TEST_CASE("X in the viewer marks and moves on; on a marked photo it unmarks and stays")
{
    Gallery desk({ "1.jpg", "2.jpg", "3.jpg" });
    desk.model().toggle(1);
    desk.model().openViewer(0);
    CHECK(desk.type("x"));
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.marked() == Names { "1.jpg", "2.jpg" });
    CHECK(desk.type("S"));
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.marked() == Names { "1.jpg" });
    CHECK(desk.type("x"));
    CHECK(desk.type("x")); // the last photo: marked, no further
    CHECK(desk.viewer() == Index(2));
    CHECK(desk.marked() == Names { "1.jpg", "2.jpg", "3.jpg" });
    CHECK(desk.window.beepCount == 0);
    desk.model().closeViewer();
    desk.model().markInViewer();
    CHECK(desk.marked() == Names { "1.jpg", "2.jpg", "3.jpg" });
}

TEST_CASE("I shows and hides the information, F the full screen")
{
    Gallery desk;
    CHECK_FALSE(desk.type("i"));
    CHECK_FALSE(desk.type("f"));
    desk.model().openViewer(0);
    CHECK(desk.type("i"));
    CHECK(*desk.model().showInfo);
    CHECK(desk.type("I"));
    CHECK_FALSE(*desk.model().showInfo);
    CHECK(desk.type("f"));
    CHECK(desk.window.fullScreen);
    CHECK(desk.type("F"));
    CHECK_FALSE(desk.window.fullScreen);
    CHECK_FALSE(desk.type("+"));
    CHECK_FALSE(desk.type("q"));
}

TEST_CASE("one key monitor is kept, a second one is dropped at once")
{
    Gallery desk;
    int firstEnded = 0;
    int secondEnded = 0;
    CHECK_FALSE(desk.model().hasKeyMonitor());
    desk.model().setKeyMonitor(Task([&] { ++firstEnded; }));
    CHECK(desk.model().hasKeyMonitor());
    desk.model().setKeyMonitor(Task([&] { ++secondEnded; }));
    CHECK(firstEnded == 0);
    CHECK(secondEnded == 1);
    desk.browser.reset();
    CHECK(firstEnded == 1);
}
