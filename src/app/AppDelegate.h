#pragma once
#include "base/FileUrl.h"
#include <functional>
#include <memory>
#include <span>

namespace pixelhain {

class BrowserModel;
class MainLoop;
class Screens;
struct Screen;

/// What the program does when the desktop tells it something. Main thread only.
///
/// The order of a start: the model is made, which reads the settings; the main window opens and
/// its content, on first appearing, restores the folders shown last; then
/// `applicationDidFinishLaunching`, after which the window comes to the front. Files named on the
/// command line go through `openUrls`.
class AppDelegate {
public:
    /// `useScreens` computes anew the size that pictures are decoded to.
    AppDelegate(BrowserModel& model, MainLoop& loop, Screens const& screens,
        std::function<void(std::span<Screen const>)> useScreens);

    void applicationDidFinishLaunching();
    void applicationDidChangeScreenParameters();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    /// The user came back: folders may have changed meanwhile; the gallery is left as it is.
    void applicationDidBecomeActive();

    /// Opens the first of the files or folders handed over from outside, after the current turn of
    /// the loop.
    void openUrls(std::span<FileUrl const> urls);

private:
    BrowserModel& model_;
    MainLoop& loop_;
    Screens const& screens_;
    std::function<void(std::span<Screen const>)> useScreens_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pixelhain
