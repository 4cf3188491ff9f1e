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
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
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
    std::optional<BrowserModel> browser;

    Desk() { start(); }

    /// Ends the program, if it runs, and starts it again with what the settings hold by now.
    void start()
    {
        browser.reset();
        browser.emplace(Ports { loop, background, files, preferences, textOrder, imageTypes, panels,
            operations, clipboard, workspace, prefetch, screenAwake, random, &folderEvents });
        browser->setWindow(&window);
        loop.settle();
    }

    BrowserModel& model() { return *browser; }

    SidebarPorts sidebarPorts()
    {
        return { loop, background, files, textOrder, imageTypes, &folderEvents, &workspace };
    }

    /// Lets everything end that is under way, in the order in which it was asked for.
    void settle()
    {
        do {
            background.finishAll();
            loop.settle();
        } while (background.pending() > 0);
    }

    /// Ends the piece of background work at `index` alone and lets its answer arrive.
    void finish(std::size_t index)
    {
        background.finish(index);
        loop.settle();
    }

    /// A folder with photos of these names.
    FileUrl folder(std::string const& path, std::vector<std::string> const& names = {})
    {
        FileUrl const url(path);
        files.addFolder(path);
        for (auto const& name : names)
            files.addFile(url.child(name));
        return url;
    }

    /// A folder with photos of these names, open and scanned.
    FileUrl open(std::string const& path, std::vector<std::string> const& names)
    {
        auto const url = folder(path, names);
        model().open(url);
        settle();
        return url;
    }

    /// Presses a key in the main window; whether it was consumed.
    bool press(KeyEvent event)
    {
        event.window = &window;
        return model().handleKey(event);
    }
    bool press(int keyCode, bool shift = false)
    {
        return press(KeyEvent { .keyCode = keyCode, .shift = shift });
    }
    bool type(std::string characters)
    {
        return press(KeyEvent { .characters = std::move(characters) });
    }

    /// The names of the marked photos, hidden ones too, sorted.
    std::vector<std::string> marked()
    {
        std::vector<std::string> names;
        for (auto const& url : *model().selection)
            names.emplace_back(url.name());
        std::ranges::sort(names);
        return names;
    }

    /// The message in the status bar; empty if there is none.
    std::string status() { return model().status->value_or(""); }

    /// The names of the visible photos in their order.
    std::vector<std::string> names()
    {
        std::vector<std::string> shown;
        for (auto const& item : *model().items)
            shown.emplace_back(item.name());
        return shown;
    }
};

using Names = std::vector<std::string>;

} // namespace pixelhain
