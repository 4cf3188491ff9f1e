#pragma once
#include "base/FileUrl.h"
#include "base/Published.h"
#include "qt/app/Trace.h"
#include <optional>
#include <string>

namespace pixelhain {

class BrowserModel;
class MainWindowWidget;

/// Watches the window and reports to the trace when it stands, when a folder's photos are known,
/// when the first picture shows, when something is to be seen of all in view, when all in view do
/// and what was read of their files for it, when nothing is left to do, when a photo stands sharp
/// in the viewer, and each message of the status bar.
class Milestones {
public:
    Milestones(Trace const& trace, BrowserModel& model, MainWindowWidget& window);

    /// To be called once, when the window's first frame is on the screen.
    void windowShown();
    /// To be called after each frame of the gallery or the viewer.
    void painted() { look(); }

private:
    void modelChanged();
    void look();
    void lookAtViewer();
    bool isIdle() const;

    Trace const& trace_;
    BrowserModel& model_;
    MainWindowWidget& window_;
    Observation observation_;
    LastSeen<std::optional<std::string>> status_;
    std::optional<FileUrl> photo_; ///< that was last seen sharp in the viewer
    bool isShown_ = false;
    bool wasLoading_ = false;
    bool wasLooking_ = false;
    bool sawPicture_ = false;
    bool sawFilled_ = true;
    bool sawComplete_ = true;
    bool sawIdle_ = false; ///< nothing to show, nothing to wait for: idle, too
};

} // namespace pixelhain
