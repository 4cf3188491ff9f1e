#include "qt/window/MenuBar.h"
#include "app/AppCommands.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/CommandMenu.h"
#include "qt/window/MainWindowWidget.h"
#include "qt/window/Menus.h"
#include "qt/window/TextKeys.h"
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <cstdlib>

namespace pixelhain {

namespace {

FileUrl homeFolder()
{
    auto const* const path = std::getenv("HOME");
    return path != nullptr && path[0] == '/' ? FileUrl(path).standardized() : FileUrl();
}

} // namespace

MenuBar::MenuBar(MainWindowWidget& window, BrowserModel& model)
    : QObject(&window)
    , window_(window)
{
    AppCommands const commands(model, *this, homeFolder());
    QString taken;
    for (auto& menu : commands.menus()) {
        auto* const added = window.menuBar()->addMenu(withMnemonic(shownText(menu.title), taken));
        menus_.push_back(new CommandMenu(*added, std::move(menu.commands)));
        connect(
            added, &QMenu::aboutToShow, menus_.back(), [made = menus_.back()] { made->refresh(); });
        connect(added, &QMenu::aboutToHide, this, [this] { menuCloses(); });
    }
    addKeys();
    window.content().sidebarToggled = [this] { refresh(); };
    connect(qApp, &QApplication::focusChanged, this,
        [this](QWidget*, QWidget* now) { focusChanged(now); });
    window.installEventFilter(this);
}

void MenuBar::addKeys()
{
    auto const add = [this](QKeySequence const& key, void (MenuBar::*pressed)()) {
        auto* const shortcut = new QShortcut(key, &window_);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, pressed);
    };
    add(QKeySequence(Qt::Key_F10), &MenuBar::openFirstMenu);
    add(QKeySequence(Qt::SHIFT | Qt::Key_F10), &MenuBar::openContextMenu);
}

void MenuBar::openFirstMenu()
{
    auto* const first = window_.menuBar()->actions().constFirst();
    window_.menuBar()->setActiveAction(first);
    for (auto* const line : first->menu()->actions())
        if (line->isEnabled() && !line->isSeparator())
            return first->menu()->setActiveAction(line);
}

// As the key does that keyboards have for it.
void MenuBar::openContextMenu()
{
    auto* const widget = window_.focusWidget() ? window_.focusWidget() : &window_;
    auto const middle = widget->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, widget->mapToGlobal(middle));
    QApplication::sendEvent(widget, &event);
}

void MenuBar::refresh()
{
    for (auto* const menu : menus_)
        menu->refresh();
}

// A key that the focused field has no use for comes up to the window before commands get it.
bool MenuBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &window_ || event->type() != QEvent::ShortcutOverride)
        return false;
    if (!window_.isEditingText() || !isTextKey(*static_cast<QKeyEvent*>(event)))
        return false;
    event->accept();
    return true;
}

void MenuBar::focusChanged(QWidget* now)
{
    if (!now || now->window() != &window_)
        return;
    if (now != window_.menuBar()) {
        before_ = now;
        text_ = qobject_cast<QLineEdit*>(now);
    } else if (isMenuClosing_ || QApplication::activePopupWidget()) {
        giveKeyboardBack();
    } else if (!window_.menuBar()->activeAction()) {
        // The bar had the keyboard when another window took it, and has forgotten what for.
        QMetaObject::invokeMethod(this, &MenuBar::giveKeyboardBack, Qt::QueuedConnection);
    }
}

// Where menus are opened and closed by keys the toolkit gives the keyboard to the bar, which is
// then dead until Escape is pressed once more. An open menu has the keys by itself, and keys that
// are pressed right after it was closed are not for the bar either.
void MenuBar::menuCloses()
{
    isMenuClosing_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isMenuClosing_ = false;
            if (!QApplication::activePopupWidget())
                giveKeyboardBack();
        },
        Qt::QueuedConnection);
}

void MenuBar::giveKeyboardBack()
{
    if (window_.focusWidget() != window_.menuBar())
        return;
    if (before_ && before_->isVisible() && before_->isEnabled())
        before_->setFocus(Qt::MenuBarFocusReason);
    else
        window_.focusGallery();
}

void MenuBar::openHelp()
{
    if (window_.openHelp)
        window_.openHelp();
}

void MenuBar::openAbout()
{
    if (window_.openAbout)
        window_.openAbout();
}

void MenuBar::close()
{
    window_.close();
}

void MenuBar::quit()
{
    window_.quit ? window_.quit() : QApplication::closeAllWindows();
}

bool MenuBar::showsSidebar() const
{
    return window_.content().showsSidebar();
}

void MenuBar::toggleSidebar()
{
    window_.content().toggleSidebar();
}

bool MenuBar::isFullScreen() const
{
    return static_cast<MainWindow const&>(window_).isFullScreen();
}

void MenuBar::toggleFullScreen()
{
    window_.toggleFullScreen();
}

bool MenuBar::isEditingText() const
{
    return text_ != nullptr;
}

// Whether there is something to paste is not looked at: the program that holds it would have to be
// asked and waited for.
bool MenuBar::canEdit(TextEdit edit) const
{
    if (!text_)
        return false;
    switch (edit) {
    case TextEdit::cut:
        return text_->hasSelectedText() && !text_->isReadOnly();
    case TextEdit::copy:
        return text_->hasSelectedText();
    case TextEdit::paste:
        return !text_->isReadOnly();
    case TextEdit::selectAll:
        return !text_->text().isEmpty();
    }
    return false;
}

void MenuBar::edit(TextEdit edit)
{
    switch (edit) {
    case TextEdit::cut:
        return text_->cut();
    case TextEdit::copy:
        return text_->copy();
    case TextEdit::paste:
        return text_->paste();
    case TextEdit::selectAll:
        return text_->selectAll();
    }
}

} // namespace pixelhain
