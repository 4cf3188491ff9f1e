#include "qt/window/SearchField.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/SymbolIcon.h"
#include "qt/window/TextKeys.h"
#include "window/MainToolbar.h"
#include <QAction>
#include <QKeyEvent>
#include <algorithm>
#include <array>
#include <string>

namespace pixelhain {

namespace {

constexpr int idealLetters = 26;
constexpr int minimumLetters = 13;
constexpr int symbolsWidth = 60; // both, with the frame

// They clear the field or leave it.
bool endsTyping(QKeyEvent const& event)
{
    constexpr std::array keys { Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Down };
    return (event.modifiers() & ~Qt::KeypadModifier) == 0
        && std::ranges::find(keys, event.key()) != keys.end();
}

bool isForTheField(QKeyEvent const& event)
{
    return endsTyping(event) || isTextKey(event);
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
    if (event->type() == QEvent::ShortcutOverride
        && isForTheField(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::FocusIn && entered)
        entered();
    return QLineEdit::event(event);
}

void SearchField::keyPressEvent(QKeyEvent* event)
{
    if (!endsTyping(*event))
        QLineEdit::keyPressEvent(event);
    else if (event->key() == Qt::Key_Escape && !text().isEmpty())
        setText({});
    else if (auto const& next = event->key() == Qt::Key_Escape ? left : found; next)
        next();
}

} // namespace pixelhain
