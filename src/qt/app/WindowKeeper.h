#pragma once
#include "base/Task.h"
#include "window/WindowPlacement.h"
#include <QObject>

namespace pixelhain {

class MainLoop;
class MainWindowWidget;
class Preferences;

/// Puts the main window where it was the last time, and keeps where it is with the settings: soon
/// after it came to rest, and when it closes. A window that was made smaller because its screen is
/// keeps its size for a larger one.
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
    void fitFrame();
    void look();
    WindowPlacement now() const;

    MainWindowWidget& window_;
    Preferences& preferences_;
    MainLoop& loop_;
    WindowPlacement placement_; ///< as it is kept
    WindowPlacement wanted_; ///< of the last time
    WindowPlacement placed_; ///< what of it fitted
    bool knowsFrame_ = false;
    Task fitting_;
    Task resting_;
};

} // namespace pixelhain
