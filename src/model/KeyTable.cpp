#include "model/KeyTable.h"
#include "base/Text.h"
#include "model/KeyEvent.h"
#include <algorithm>
#include <span>
#include <string_view>

namespace pixelhain {

namespace {

struct Position {
    int keyCode;
    KeyAction action;
};

struct Character {
    std::string_view character;
    KeyAction action;
};

constexpr Position galleryPositions[] = {
    { keyCodes::returnKey, KeyAction::openViewer },
    { keyCodes::space, KeyAction::openViewer },
    { keyCodes::keypadEnter, KeyAction::openViewer },
    { keyCodes::escape, KeyAction::unmarkAll },
    { keyCodes::home, KeyAction::firstPhoto },
    { keyCodes::end, KeyAction::lastPhoto },
    { keyCodes::left, KeyAction::left },
    { keyCodes::right, KeyAction::right },
    { keyCodes::down, KeyAction::down },
    { keyCodes::up, KeyAction::up },
};

constexpr Character galleryCharacters[] = {
    { "x", KeyAction::toggleMark },
    { "s", KeyAction::toggleMark },
    { "d", KeyAction::slideshow },
    { "+", KeyAction::larger },
    { "=", KeyAction::larger },
    { "-", KeyAction::smaller },
};

constexpr Position viewerPositions[] = {
    { keyCodes::returnKey, KeyAction::closeViewer },
    { keyCodes::escape, KeyAction::closeViewer },
    { keyCodes::keypadEnter, KeyAction::closeViewer },
    { keyCodes::space, KeyAction::pauseOrClose },
    { keyCodes::home, KeyAction::showFirst },
    { keyCodes::end, KeyAction::showLast },
    { keyCodes::left, KeyAction::previous },
    { keyCodes::up, KeyAction::previous },
    { keyCodes::right, KeyAction::next },
    { keyCodes::down, KeyAction::next },
};

constexpr Character viewerCharacters[] = {
    { "x", KeyAction::markAndMoveOn },
    { "s", KeyAction::markAndMoveOn },
    { "i", KeyAction::toggleInfo },
    { "f", KeyAction::toggleFullScreen },
    { "d", KeyAction::slideshow },
};

KeyAction commandAction(KeyEvent const& event, std::string_view character)
{
    if (event.option || event.control || character != "a")
        return KeyAction::none;
    return event.shift ? KeyAction::selectNone : KeyAction::selectAll;
}

KeyAction actionOf(KeyEvent const& event, std::span<Position const> positions,
    std::span<Character const> characters)
{
    auto const character = asciiLowercased(event.characters);
    if (event.command)
        return commandAction(event, character);
    if (event.option || event.control)
        return KeyAction::none;
    auto const place = std::ranges::find(positions, event.keyCode, &Position::keyCode);
    if (place != positions.end())
        return place->action;
    auto const typed = std::ranges::find(characters, character, &Character::character);
    return typed == characters.end() ? KeyAction::none : typed->action;
}

} // namespace

KeyAction galleryAction(KeyEvent const& event)
{
    return actionOf(event, galleryPositions, galleryCharacters);
}

KeyAction viewerAction(KeyEvent const& event)
{
    return actionOf(event, viewerPositions, viewerCharacters);
}

bool isArrowKey(KeyEvent const& event)
{
    return event.keyCode >= keyCodes::left && event.keyCode <= keyCodes::up;
}

bool isEscape(KeyEvent const& event)
{
    return event.keyCode == keyCodes::escape && !event.command && !event.option && !event.control;
}

} // namespace pixelhain
