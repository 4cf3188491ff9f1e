#pragma once
#include "base/Task.h"
#include "window/WindowPlacement.h"
#include <QObject>

namespace pixelhain {

class MainLoop;
class MainWindowWidget;
class Preferences;

/// Puts the main window where it was the last time, and keeps where it is with the settings: soon
/// after it came to rest, and when it closes.
class WindowKeeper final : public QObject {
public:
    /// To be made before the window is first shown. All outlive this.
    WindowKeeper(MainWindowWidget& window, Preferences& preferences, MainLoop& loop);

    /// Writes now what is not written yet.
    void keep();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();
    void look();

    MainWindowWidget& window_;
    Preferences& preferences_;
    MainLoop& loop_;
    WindowPlacement placement_;
    Task resting_;
};

} // namespace pixelhain
