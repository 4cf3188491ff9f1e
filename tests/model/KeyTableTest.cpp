#include "model/KeyTable.h"
#include "model/KeyEvent.h"
#include <doctest/doctest.h>
#include <string>
#include <vector>

using namespace pixelhain;

namespace {

struct Case {
    char const* what;
    int keyCode;
    std::string characters;
    KeyAction gallery;
    KeyAction viewer;
};

using enum KeyAction;

std::vector<Case> const table {
    { "Return", 36, "\r", openViewer, closeViewer },
    { "Space", 49, " ", openViewer, pauseOrClose },
    { "Enter of the keypad", 76, "\x03", openViewer, closeViewer },
    { "Escape", 53, "\x1b", unmarkAll, closeViewer },
    { "Home", 115, "", firstPhoto, showFirst },
    { "End", 119, "", lastPhoto, showLast },
    { "←", 123, "", left, previous },
    { "→", 124, "", right, next },
    { "↓", 125, "", down, next },
    { "↑", 126, "", up, previous },
    { "x", 7, "x", toggleMark, markAndMoveOn },
    { "s", 1, "s", toggleMark, markAndMoveOn },
    { "i", 34, "i", none, toggleInfo },
    { "f", 3, "f", none, toggleFullScreen },
    { "d", 2, "d", slideshow, slideshow },
    { "+", 30, "+", larger, none },
    { "=", 24, "=", larger, none },
    { "-", 27, "-", smaller, none },
    { "q", 12, "q", none, none },
    { "a", 0, "a", none, none },
    { "a key without a character", 96, "", none, none },
    { "a key that types more than one", 96, "xx", none, none },
};

KeyEvent event(Case const& row)
{
    return { .keyCode = row.keyCode, .characters = row.characters };
}

} // namespace

TEST_CASE("each key means what the tables say")
{
    for (auto const& row : table) {
        CAPTURE(row.what);
        CHECK(galleryAction(event(row)) == row.gallery);
        CHECK(viewerAction(event(row)) == row.viewer);
    }
}

TEST_CASE("letter case and Shift change no key but A with the command key")
{
    for (auto const& row : table) {
        CAPTURE(row.what);
        auto shifted = event(row);
        shifted.shift = true;
        for (auto& character : shifted.characters)
            if (character >= 'a' && character <= 'z')
                character = static_cast<char>(character - 'a' + 'A');
        CHECK(galleryAction(shifted) == row.gallery);
        CHECK(viewerAction(shifted) == row.viewer);
    }
}

TEST_CASE("with ⌥ or ⌃ no key means anything")
{
    for (auto const& row : table)
        for (auto const modifier : { &KeyEvent::option, &KeyEvent::control }) {
            CAPTURE(row.what);
            auto held = event(row);
            held.*modifier = true;
            CHECK(galleryAction(held) == none);
            CHECK(viewerAction(held) == none);
            held.command = true;
            CHECK(galleryAction(held) == none);
            CHECK(viewerAction(held) == none);
        }
}

TEST_CASE("with ⌘ only A means something: all, and with Shift none")
{
    for (auto const& row : table) {
        CAPTURE(row.what);
        auto held = event(row);
        held.command = true;
        CHECK(galleryAction(held) == (row.characters == "a" ? selectAll : none));
        CHECK(viewerAction(held) == (row.characters == "a" ? selectAll : none));
        held.shift = true;
        CHECK(galleryAction(held) == (row.characters == "a" ? selectNone : none));
        CHECK(viewerAction(held) == (row.characters == "a" ? selectNone : none));
    }
    CHECK(galleryAction({ .characters = "A", .command = true, .shift = true }) == selectNone);
}

TEST_CASE("the place of a key comes before what it types")
{
    CHECK(galleryAction({ .keyCode = 123, .characters = "x" }) == left);
    CHECK(viewerAction({ .keyCode = 53, .characters = "f" }) == closeViewer);
}

TEST_CASE("the four arrows are told from their neighbours")
{
    for (int code : { 123, 124, 125, 126 })
        CHECK(isArrowKey({ .keyCode = code }));
    for (int code : { -1, 53, 119, 122, 127 })
        CHECK_FALSE(isArrowKey({ .keyCode = code }));
}

TEST_CASE("Escape is Escape with Shift too, with other modifiers it is not")
{
    CHECK(isEscape({ .keyCode = 53 }));
    CHECK(isEscape({ .keyCode = 53, .shift = true }));
    CHECK_FALSE(isEscape({ .keyCode = 53, .command = true }));
    CHECK_FALSE(isEscape({ .keyCode = 53, .option = true }));
    CHECK_FALSE(isEscape({ .keyCode = 53, .control = true }));
    CHECK_FALSE(isEscape({ .keyCode = 36 }));
}
