#include "window/ContentView.h"
#include "model/BrowserModel.h"
#include "model/Messages.h"
#include "ports/MainLoop.h"

namespace pixelhain {

ContentView::Detail ContentView::detail() const
{
    // Nobody is invited to choose a folder while one is about to be shown.
    if (model_.folders->empty())
        return model_.isLookingForFolders() ? Detail::gallery : Detail::noFolder;
    return model_.items->empty() ? Detail::noPhotos : Detail::gallery;
}

bool ContentView::showsViewer() const
{
    return model_.viewerIndex->has_value();
}

std::string ContentView::title() const
{
    return model_.windowTitle();
}

std::string ContentView::subtitle() const
{
    return *model_.folder ? messages::photoCount(model_.items->size()) : std::string();
}

void ContentView::appeared()
{
    model_.restoreLastFolders();
}

void ContentView::monitorKeys(std::function<Task()> const& install)
{
    if (!model_.hasKeyMonitor())
        model_.setKeyMonitor(install());
}

void ContentView::hosted(MainWindow* window)
{
    if (!window || window == model_.window())
        return;
    loop_.post([this, alive = std::weak_ptr(alive_), window] {
        if (!alive.expired())
            model_.setWindow(window);
    });
}

bool ContentView::drop(std::span<FileUrl const> urls)
{
    dropTargeted = false;
    if (urls.empty())
        return false;
    loop_.post([this, alive = std::weak_ptr(alive_), url = urls.front()] {
        if (!alive.expired())
            model_.open(url);
    });
    return true;
}

} // namespace pixelhain
