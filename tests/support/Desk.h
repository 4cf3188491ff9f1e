#pragma once
#include "model/BrowserModel.h"
#include "model/KeyEvent.h"
#include "sidebar/SidebarPorts.h"
#include "support/FakeBackground.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileOperations.h"
#include "support/FakeFileSystem.h"
#include "support/FakeFolderEvents.h"
#include "support/FakeImageTypes.h"
#include "support/FakeLoop.h"
#include "support/FakeMainWindow.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakePreferences.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include "support/FakeTextOrder.h"
#include "support/FakeWorkspace.h"
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

/// A browser model in a world made for tests: a drive in memory, a clock that stands still, and
/// background work that ends when a test says so.
struct Desk {
    FakeLoop loop;
    FakeBackground background;
    FakeFileSystem files;
    FakePreferences preferences;
    FakeTextOrder textOrder;
    FakeImageTypes imageTypes;
    FakePanels panels;
    FakeFileOperations operations { files };
    FakeClipboard clipboard;
    FakeWorkspace workspace;
    FakePicturePrefetch prefetch;
    FakeScreenAwake screenAwake;
    FakeRandomSource random;
    FakeFolderEvents folderEvents;
    FakeMainWindow window;
    std::chrono::milliseconds scanPatience = std::chrono::hours(24); ///< of a program begun later
    std::optional<BrowserModel> browser;

    Desk();
    ~Desk();
    Desk(Desk const&) = delete;
    Desk& operator=(Desk const&) = delete;

    /// Ends the program, if it runs, and starts it again with what the settings hold by now.
    void start();

    BrowserModel& model();

    SidebarPorts sidebarPorts();

    /// Lets everything end that is under way, in the order in which it was asked for.
    void settle();

    /// Ends the piece of background work at `index` alone and lets its answer arrive.
    void finish(std::size_t index);

    /// A folder with photos of these names.
    FileUrl folder(std::string const& path, std::vector<std::string> const& names = {});

    /// A folder with photos of these names, open and scanned.
    FileUrl open(std::string const& path, std::vector<std::string> const& names);

    /// Presses a key in the main window; whether it was consumed.
    bool press(KeyEvent event);
    bool press(int keyCode, bool shift = false);
    bool type(std::string characters);

    /// The names of the marked photos, hidden ones too, sorted.
    std::vector<std::string> marked();

    /// The message in the status bar; empty if there is none.
    std::string status();

    /// The names of the visible photos in their order.
    std::vector<std::string> names();
};

using Names = std::vector<std::string>;

} // namespace pixelhain
