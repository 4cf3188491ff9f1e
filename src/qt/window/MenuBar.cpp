#include "qt/window/MenuBar.h"
#include "app/AppCommands.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/CommandMenu.h"
#include "qt/window/MainWindowWidget.h"
#include "qt/window/Menus.h"
#include "qt/window/TextKeys.h"
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
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
    }
    connect(qApp, &QApplication::focusChanged, this,
        [this](QWidget*, QWidget* now) { focusChanged(now); });
    window.installEventFilter(this);
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
    if (now && now->window() == &window_ && now != window_.menuBar())
        text_ = qobject_cast<QLineEdit*>(now);
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
    refresh();
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
