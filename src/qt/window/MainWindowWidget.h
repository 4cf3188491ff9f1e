#pragma once
#include "ports/MainWindow.h"
#include "qt/window/ContentWidget.h"
#include "qt/window/HiddenPointer.h"
#include <QMainWindow>
#include <functional>

namespace pixelhain {

class MenuBar;

/// The main window: content, title and menus.
class MainWindowWidget final : public QMainWindow, public MainWindow {
public:
    MainWindowWidget(GridWidget::Services const& services, SidebarPorts const& sidebar);
    ~MainWindowWidget() override;

    ContentWidget& content() { return *content_; }
    ContentWidget const& content() const { return *content_; }

    /// Whether what the window shows is all there is to show for now.
    bool isComplete() const;

    /// Whether it was told to close, and waits for the file that is under way.
    bool isClosing() const { return isClosing_; }

    /// Whether the first frame has come to the screen.
    bool isOnScreen() const { return isOnScreen_; }

    /// Called once, when the window stands on the screen with its first frame.
    std::function<void()> shown;
    std::function<void()> activated;
    /// Called whenever the window has been closed; a file under way may delay that.
    std::function<void()> closed;

    /// Opens the help window or brings it to the front.
    std::function<void()> openHelp;

    /// Ends the program; by default, closes its windows.
    std::function<void()> quit;

    /// Opens what is told about the program, or brings it to the front.
    std::function<void()> openAbout;

    void focusGallery() override;
    [[nodiscard]] bool isEditingText() const override;
    void beep() override;
    [[nodiscard]] bool isFullScreen() const override;
    void toggleFullScreen() override;
    void hidePointerUntilMoved() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void modelChanged();
    void showMenuBar();

    BrowserModel& model_;
    MainLoop& loop_;
    ContentWidget* content_ = nullptr;
    MenuBar* menus_ = nullptr;
    bool hasAppeared_ = false;
    bool isClosing_ = false;
    bool hasPainted_ = false;
    bool isOnScreen_ = false;
    HiddenPointer pointer_;
    Observation observation_;
};

} // namespace pixelhain
