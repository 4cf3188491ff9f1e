#include "qt/window/KeyMapping.h"
#include <QKeyEvent>
#include <array>
#include <cstdint>

namespace pixelhain {

namespace {

struct KnownKey {
    int keyCode;
    Qt::Key key;
    std::uint32_t scanCode; ///< of X11 and Wayland alike
};

constexpr std::array knownKeys {
    KnownKey { keyCodes::returnKey, Qt::Key_Return, 36 },
    KnownKey { keyCodes::space, Qt::Key_Space, 65 },
    KnownKey { keyCodes::escape, Qt::Key_Escape, 9 },
    KnownKey { keyCodes::keypadEnter, Qt::Key_Enter, 104 },
    KnownKey { keyCodes::home, Qt::Key_Home, 110 },
    KnownKey { keyCodes::end, Qt::Key_End, 115 },
    KnownKey { keyCodes::left, Qt::Key_Left, 113 },
    KnownKey { keyCodes::right, Qt::Key_Right, 114 },
    KnownKey { keyCodes::down, Qt::Key_Down, 116 },
    KnownKey { keyCodes::up, Qt::Key_Up, 111 },
};

// A key that was made another function key or a modifier is that and nothing else.
bool typesText(int key)
{
    return key > 0 && key < Qt::Key_Escape;
}

int keyCodeOf(QKeyEvent const& event)
{
    for (auto const& known : knownKeys)
        if (event.key() == known.key)
            return known.keyCode;
    for (auto const& known : knownKeys)
        if (event.nativeScanCode() == known.scanCode && typesText(event.key()))
            return known.keyCode;
    return keyCodes::other;
}

// With Ctrl the text is a control character, and with Alt it may be empty; the key is what the
// layout has there, or on the layout of Latin letters where it has none.
QString charactersOf(QKeyEvent const& event)
{
    auto const held
        = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (!held)
        return event.text();
    if (!typesText(event.key()))
        return {};
    auto const letter = static_cast<char32_t>(event.key());
    return QString::fromUcs4(&letter, 1).toLower();
}

} // namespace

KeyEvent mappedKey(QKeyEvent const& event)
{
    KeyEvent mapped;
    auto const modifiers = event.modifiers();
    mapped.keyCode = keyCodeOf(event);
    mapped.characters = charactersOf(event).toStdString();
    mapped.command = modifiers.testFlag(Qt::ControlModifier);
    mapped.shift = modifiers.testFlag(Qt::ShiftModifier);
    mapped.option = modifiers.testFlag(Qt::AltModifier);
    mapped.control = modifiers.testFlag(Qt::MetaModifier);
    return mapped;
}

} // namespace pixelhain
