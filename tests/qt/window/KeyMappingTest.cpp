#include "qt/window/KeyMapping.h"
#include <QKeyEvent>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

KeyEvent typed(
    int key, QString const& text = {}, Qt::KeyboardModifiers modifiers = {}, quint32 scanCode = 0)
{
    return mappedKey(QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text));
}

} // namespace

TEST_CASE("the keys that are known by their place")
{
    CHECK(typed(Qt::Key_Return, QStringLiteral("\r")).keyCode == keyCodes::returnKey);
    CHECK(typed(Qt::Key_Enter, QStringLiteral("\r"), Qt::KeypadModifier).keyCode
        == keyCodes::keypadEnter);
    CHECK(typed(Qt::Key_Space, QStringLiteral(" ")).keyCode == keyCodes::space);
    CHECK(typed(Qt::Key_Escape).keyCode == keyCodes::escape);
    CHECK(typed(Qt::Key_Home).keyCode == keyCodes::home);
    CHECK(typed(Qt::Key_End).keyCode == keyCodes::end);
    CHECK(typed(Qt::Key_Left).keyCode == keyCodes::left);
    CHECK(typed(Qt::Key_Right).keyCode == keyCodes::right);
    CHECK(typed(Qt::Key_Up).keyCode == keyCodes::up);
    CHECK(typed(Qt::Key_Down, {}, Qt::KeypadModifier).keyCode == keyCodes::down);
    CHECK(typed(Qt::Key_X, QStringLiteral("x")).keyCode == keyCodes::other);
}

TEST_CASE("arrows on a letter's place are arrows, Escape on Caps Lock is Escape")
{
    constexpr quint32 letterE = 26;
    constexpr quint32 capsLock = 66;
    CHECK(typed(Qt::Key_Left, {}, {}, letterE).keyCode == keyCodes::left);
    CHECK(typed(Qt::Key_Escape, {}, {}, capsLock).keyCode == keyCodes::escape);
}

TEST_CASE("a key at a known place that types something else there keeps its place's meaning")
{
    constexpr quint32 spaceBar = 65;
    CHECK(typed(Qt::Key_nobreakspace, QStringLiteral("\u00A0"), Qt::ShiftModifier, spaceBar).keyCode
        == keyCodes::space);
}

TEST_CASE("a key at a known place that was made another function key is no longer that")
{
    constexpr quint32 escapeKey = 9;
    CHECK(typed(Qt::Key_CapsLock, {}, {}, escapeKey).keyCode == keyCodes::other);
    CHECK(typed(Qt::Key_F5, {}, {}, escapeKey).keyCode == keyCodes::other);
}

TEST_CASE("letters are those that the layout types, wherever it has them")
{
    constexpr quint32 usX = 53;
    CHECK(typed(Qt::Key_Q, QStringLiteral("q"), {}, usX).characters == "q");
    CHECK(typed(Qt::Key_X, QStringLiteral("X"), Qt::ShiftModifier).characters == "X");
    CHECK(typed(0x427, QStringLiteral("ч"), {}, usX).characters == "ч");
    CHECK(typed(Qt::Key_Plus, QStringLiteral("+"), Qt::KeypadModifier).characters == "+");
    CHECK(typed(Qt::Key_Equal, QStringLiteral("="), Qt::ShiftModifier).characters == "=");
    CHECK(typed(Qt::Key_At, QStringLiteral("@"), Qt::GroupSwitchModifier).characters == "@");
    CHECK(typed(Qt::Key_Dead_Acute).characters.empty());
}

TEST_CASE("with Ctrl the key's letter counts, not the control character")
{
    auto const all = typed(Qt::Key_A, QStringLiteral("\x01"), Qt::ControlModifier);
    CHECK(all.characters == "a");
    CHECK(all.command);
    CHECK_FALSE(all.shift);
    auto const none
        = typed(Qt::Key_A, QStringLiteral("\x01"), Qt::ControlModifier | Qt::ShiftModifier);
    CHECK(none.characters == "a");
    CHECK(none.shift);
    CHECK(typed(Qt::Key_Control, {}, Qt::ControlModifier).characters.empty());
}

TEST_CASE("every modifier has its own meaning, AltGr has none")
{
    CHECK(typed(Qt::Key_X, {}, Qt::AltModifier).option);
    CHECK(typed(Qt::Key_X, {}, Qt::MetaModifier).control);
    auto const event = typed(Qt::Key_X, QStringLiteral("x"), Qt::GroupSwitchModifier);
    CHECK_FALSE(event.option);
    CHECK_FALSE(event.control);
    CHECK_FALSE(event.command);
}
