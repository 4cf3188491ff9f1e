#pragma once
#include "model/BrowserModel.h"
#include "support/FakeBackground.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileOperations.h"
#include "support/FakeFileSystem.h"
#include "support/FakeFolderEvents.h"
#include "support/FakeImageTypes.h"
#include "support/FakeLoop.h"
#include "support/FakeMainWindow.h"
#include "support/FakePanels.h"
#include "support/FakePreferences.h"
#include "support/FakeTextOrder.h"
#include "support/FakeWorkspace.h"
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
    FakeFolderEvents folderEvents;
    FakeMainWindow window;
    std::optional<BrowserModel> browser;

    Desk() { start(); }

    /// Ends the program, if it runs, and starts it again with what the settings hold by now.
    void start()
    {
        browser.reset();
        browser.emplace(Ports { loop, background, files, preferences, textOrder, imageTypes, panels,
            operations, clipboard, workspace, &folderEvents });
        browser->setWindow(&window);
        loop.settle();
    }

    BrowserModel& model() { return *browser; }

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
