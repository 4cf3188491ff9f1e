#include "qt/window/MainWindowWidget.h"
#include "model/BrowserModel.h"
#include "ports/MainLoop.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/KeyMonitor.h"
#include "qt/window/MenuBar.h"
#include <QApplication>
#include <QCloseEvent>
#include <QEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <utility>

namespace pixelhain {

namespace {

// A window title has one line and no second one below it, and the toolkit gives "[*]" a meaning.
QString titleText(ContentView const& view)
{
    auto title = shownText(view.title());
    if (auto const subtitle = view.subtitle(); !subtitle.empty())
        title += QStringLiteral(" – ") + shownText(subtitle);
    return title.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

} // namespace

MainWindowWidget::MainWindowWidget(
    GridWidget::Services const& services, SidebarPorts const& sidebar)
    : model_(services.model)
    , loop_(services.loop)
    , observation_(services.model.observe([this] { modelChanged(); }))
{
    setMinimumSize(
        static_cast<int>(ContentView::minimumWidth), static_cast<int>(ContentView::minimumHeight));
    resize(
        static_cast<int>(ContentView::defaultWidth), static_cast<int>(ContentView::defaultHeight));
    auto* const bar = new QMenuBar; // measures nothing: the fonts may still be on their way
    content_ = new ContentWidget(services, sidebar, this);
    setCentralWidget(content_);
    setMenuBar(bar);
    menus_ = new MenuBar(*this, model_);
    modelChanged();
}

MainWindowWidget::~MainWindowWidget()
{
    if (model_.window() == this)
        model_.setWindow(nullptr);
}

void MainWindowWidget::modelChanged()
{
    setWindowTitle(titleText(content_->view()));
    content_->modelChanged();
    menus_->refresh();
    showMenuBar();
}

// A photo on the full screen has all of it. A bar without height keeps its keys, a hidden one would
// not.
void MainWindowWidget::showMenuBar()
{
    bool const isAway = isFullScreen() && content_->viewer() && content_->view().showsViewer();
    menuBar()->setMaximumHeight(isAway ? 0 : QWIDGETSIZE_MAX);
}

bool MainWindowWidget::isComplete() const
{
    if (model_.isLoading || model_.isLookingForFolders())
        return false;
    if (auto const* const viewer = content_->viewer(); viewer && content_->view().showsViewer())
        return viewer->isComplete();
    return model_.items->empty() || content_->grid().isComplete();
}

void MainWindowWidget::focusGallery()
{
    content_->focusDetail();
}

bool MainWindowWidget::isEditingText() const
{
    auto* const focused = focusWidget();
    return qobject_cast<QLineEdit*>(focused) || qobject_cast<QTextEdit*>(focused)
        || qobject_cast<QPlainTextEdit*>(focused);
}

void MainWindowWidget::beep()
{
    QApplication::beep();
}

bool MainWindowWidget::isFullScreen() const
{
    return QMainWindow::isFullScreen();
}

void MainWindowWidget::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void MainWindowWidget::hidePointerUntilMoved()
{
    pointer_.hideUntilMoved();
}

// A file that is being moved or copied is finished, or given up cleanly, before the program may
// end.
void MainWindowWidget::closeEvent(QCloseEvent* event)
{
    if (!model_.isBusyWithFiles()) {
        if (closed)
            closed();
        return;
    }
    event->ignore();
    if (std::exchange(isClosing_, true))
        return;
    model_.stopFileWork([alive = QPointer<MainWindowWidget>(this)] {
        if (!alive)
            return;
        alive->isClosing_ = false;
        alive->close();
    });
}

void MainWindowWidget::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (std::exchange(hasAppeared_, true))
        return;
    content_->view().hosted(this);
    content_->view().monitorKeys([this] { return monitorKeys(model_); });
    // After whatever was handed over at the start, so that this is opened instead.
    loop_.post([alive = QPointer<MainWindowWidget>(this)] {
        if (alive)
            alive->content_->view().appeared();
    });
}

// The frame that is painted now is on the screen when the loop comes round.
void MainWindowWidget::paintEvent(QPaintEvent* event)
{
    QMainWindow::paintEvent(event);
    if (std::exchange(hasPainted_, true))
        return;
    loop_.post([alive = QPointer<MainWindowWidget>(this)] {
        if (!alive)
            return;
        alive->isOnScreen_ = true;
        if (alive->shown)
            alive->shown();
    });
}

void MainWindowWidget::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && menus_) {
        menus_->refresh();
        showMenuBar();
    }
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && activated)
        activated();
}

} // namespace pixelhain
