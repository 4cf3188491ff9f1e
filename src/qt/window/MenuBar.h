#pragma once
#include "app/AppWindows.h"
#include <QObject>
#include <QPointer>
#include <vector>

class QLineEdit;
class QMenuBar;

namespace pixelhain {

class BrowserModel;
class CommandMenu;
class MainWindowWidget;

/// The menus of the main window, and what their commands ask of the windows. A child of the window.
class MenuBar final : public QObject, private AppWindows {
public:
    MenuBar(MainWindowWidget& window, BrowserModel& model);

    /// To be called after every change of the model and of the window's state.
    void refresh();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void openHelp() override;
    void openAbout() override;
    void close() override;
    void quit() override;
    [[nodiscard]] bool showsSidebar() const override;
    void toggleSidebar() override;
    [[nodiscard]] bool isFullScreen() const override;
    void toggleFullScreen() override;
    [[nodiscard]] bool isEditingText() const override;
    [[nodiscard]] bool canEdit(TextEdit edit) const override;
    void edit(TextEdit edit) override;

    void addKeys();
    void openFirstMenu();
    void openContextMenu();
    void focusChanged(QWidget* now);
    void menuCloses();
    void giveKeyboardBack();

    MainWindowWidget& window_;
    std::vector<CommandMenu*> menus_;
    bool isMenuClosing_ = false;
    QPointer<QWidget> before_; ///< what had the keyboard before the bar
    QPointer<QLineEdit> text_; ///< being edited, also while somebody walks through the menus
};

} // namespace pixelhain
