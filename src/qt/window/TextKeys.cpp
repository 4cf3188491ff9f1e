#include "qt/window/TextKeys.h"
#include <QKeyEvent>
#include <algorithm>
#include <array>

namespace pixelhain {

// What the desktop has for these besides is taken too; the keys that are written out here are for
// the text on every desktop.
bool isTextKey(QKeyEvent const& event)
{
    constexpr std::array keys { Qt::CTRL | Qt::Key_Z, Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
        Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_X,
        Qt::CTRL | Qt::Key_V, Qt::CTRL | Qt::Key_Backspace, Qt::CTRL | Qt::Key_Delete,
        QKeyCombination(Qt::Key_Delete) };
    constexpr std::array standardKeys { QKeySequence::Undo, QKeySequence::Redo,
        QKeySequence::SelectAll, QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste,
        QKeySequence::Delete, QKeySequence::DeleteStartOfWord, QKeySequence::DeleteEndOfWord };
    QKeyCombination const pressed(
        event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event.key()));
    return std::ranges::find(keys, pressed) != keys.end()
        || std::ranges::any_of(standardKeys, [&](auto key) { return event.matches(key); });
}

} // namespace pixelhain
