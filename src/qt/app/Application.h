#pragma once
#include "app/AppDelegate.h"
#include "contactsheet/ContactSheetExport.h"
#include "images/ImageLoader.h"
#include "images/LoaderPrefetch.h"
#include "model/BrowserModel.h"
#include "qt/app/AccessibilityGuard.h"
#include "qt/app/CommandLine.h"
#include "qt/app/HelpWindow.h"
#include "qt/app/Milestones.h"
#include "qt/app/Screenshot.h"
#include "qt/app/ServiceAction.h"
#include "qt/app/TerminationSignals.h"
#include "qt/app/Trace.h"
#include "qt/app/WindowKeeper.h"
#include "qt/contactsheet/ContactSheetDialogWidget.h"
#include "qt/ports/QtPreferences.h"
#include "qt/ports/QtScreens.h"
#include "qt/viewer/ViewerImageWidget.h"
#include "qt/window/MainWindowWidget.h"
#include <memory>

namespace pixelhain {

class ApplicationService;
struct OpenRequest;
struct Services;

/// The program with its one model and its two windows: what is plugged into what, how it starts and
/// how it ends. The toolkit and the services must be there already, and outlive this.
class Application {
public:
    explicit Application(Services& services);
    Application(Application const&) = delete;
    Application& operator=(Application const&) = delete;

    /// Opens the main window, with the tokens of the start, and what the command line names.
    void start(CommandLine const& line, OpenRequest const& request);

    /// Does what others on the session bus ask for, as long as both live.
    void answer(ApplicationService& service);

private:
    void addViewer();
    void watchMilestones();
    HelpWindow& help();
    void perform(ServiceAction action, OpenRequest const& request);
    [[nodiscard]] bool take(OpenRequest const& request);
    void end();
    void mainWindowClosed();

    Services& services_;
    Trace const trace_;
    AccessibilityGuard const accessibility_;
    QtPreferences preferences_;
    ImageLoader loader_;
    LoaderPrefetch prefetch_;
    BrowserModel model_;
    LoaderThumbnails thumbnails_;
    ThumbnailMenu menu_;
    MainWindowWidget window_;
    WindowKeeper keeper_;
    LoaderPictures pictures_;
    ShareMenu share_;
    ContactSheetExport sheets_;
    ContactSheetPresenter const sheetPresenter_;
    TerminationSignals const endings_;
    QtScreens const screens_;
    AppDelegate delegate_;
    std::unique_ptr<HelpWindow> help_;
    Milestones milestones_;
    Task looking_;
    Task icon_;
    std::unique_ptr<Screenshot> screenshot_;
    bool isEnding_ = false;
};

} // namespace pixelhain
