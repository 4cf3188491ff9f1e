#include "qt/window/SearchField.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/SymbolIcon.h"
#include "window/MainToolbar.h"
#include <QAction>
#include <QKeyEvent>
#include <algorithm>
#include <initializer_list>
#include <string>

namespace pixelhain {

namespace {

constexpr int idealLetters = 26;
constexpr int minimumLetters = 13;
constexpr int symbolsWidth = 60; // both, with the frame

// Keys that mean something to a text belong to it, although menus have them too.
bool isTextKey(QKeyEvent const& event)
{
    if (event.modifiers() == Qt::NoModifier || event.modifiers() == Qt::KeypadModifier)
        for (auto const key : { Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Down })
            if (event.key() == key)
                return true;
    for (auto const key : { QKeySequence::Undo, QKeySequence::Redo, QKeySequence::SelectAll,
             QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste, QKeySequence::Delete,
             QKeySequence::DeleteStartOfWord, QKeySequence::DeleteEndOfWord })
        if (event.matches(key))
            return true;
    return false;
}

} // namespace

SearchField::SearchField(QWidget* parent)
    : QLineEdit(parent)
    , clear_(new QAction(shownText(MainToolbar::clearTitle), this))
{
    setAcceptDrops(false); // a file is for the window, not its path for the text
    setPlaceholderText(shownText(MainToolbar::searchPrompt));
    setAccessibleName(shownText(MainToolbar::searchPrompt));
    auto* const look = new QAction(
        symbolIcon(MainToolbar::searchSymbol), shownText(MainToolbar::searchPrompt), this);
    connect(look, &QAction::triggered, this, [this] { setFocus(); });
    addAction(look, LeadingPosition);
    clear_->setIcon(symbolIcon(MainToolbar::clearSymbol));
    clear_->setToolTip(clear_->text());
    addAction(clear_, TrailingPosition);
    clear_->setVisible(false);
    connect(clear_, &QAction::triggered, this, [this] {
        setText({});
        setFocus();
    });
    connect(this, &QLineEdit::textChanged, this, [this] { textEdited(); });
}

void SearchField::textEdited()
{
    clear_->setVisible(!text().isEmpty());
    if (typed)
        typed(text().toStdString());
}

void SearchField::follow(std::string const& text)
{
    if (text == this->text().toStdString())
        return;
    QSignalBlocker const blocker(this);
    setText(QString::fromStdString(text));
    clear_->setVisible(!text.empty());
}

int SearchField::idealWidth() const
{
    return symbolsWidth + idealLetters * fontMetrics().averageCharWidth();
}

int SearchField::minimumUsefulWidth() const
{
    return symbolsWidth + minimumLetters * fontMetrics().averageCharWidth();
}

bool SearchField::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && isTextKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void SearchField::keyPressEvent(QKeyEvent* event)
{
    auto const held = event->modifiers() & ~Qt::KeypadModifier;
    auto const leave = [this] {
        if (left)
            left();
    };
    if (held == Qt::NoModifier && event->key() == Qt::Key_Escape) {
        if (text().isEmpty())
            leave();
        else
            setText({});
        return;
    }
    if (held == Qt::NoModifier
        && (event->key() == Qt::Key_Down || event->key() == Qt::Key_Return
            || event->key() == Qt::Key_Enter)) {
        leave();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace pixelhain
