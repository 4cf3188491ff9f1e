#include "model/BrowserModel.h"
#include "model/Messages.h"
#include "model/RecentFolders.h"
#include "model/Settings.h"
#include "ports/Background.h"
#include "ports/FileSystem.h"
#include "ports/MainWindow.h"
#include "ports/Panels.h"
#include "ports/TextOrder.h"
#include <algorithm>
#include <iterator>
#include <utility>

namespace pixelhain {

struct BrowserModel::Restorable {
    std::vector<FileUrl> folders;
    std::optional<FileUrl> root;
};

void BrowserModel::chooseFolder()
{
    FolderPanelRequest const request { std::string(messages::openFolderButton),
        std::string(messages::openFolderMessage), folder };
    ports_.panels.chooseFolder(request, [this, alive = std::weak_ptr(alive_)](FileUrl const& url) {
        if (!alive.expired())
            open(url);
    });
}

void BrowserModel::open(FileUrl const& url)
{
    look(url, [this, url = url.standardized()](Place place) {
        if (place == Place::nothing)
            return false;
        bool const isFolder = place == Place::folder;
        auto const shown = isFolder ? url : url.parent();
        openPlace(shown, isFolder ? std::nullopt : std::optional(url));
        setRecentFolders(recents::with(recentFolders, shown));
        return true;
    });
}

// Whether a place exists is asked in the background: it may lie on a drive that has to wake up.
void BrowserModel::look(FileUrl const& url, std::function<bool(Place)> opens)
{
    auto const look = [&files = ports_.files, url] {
        if (files.isFolder(url))
            return Place::folder;
        return files.exists(url) ? Place::file : Place::nothing;
    };
    openTask_ = runThen(ports_.background, ports_.loop, Priority::userInteractive, look,
        [this, opens = std::move(opens)](Place place) {
            openTask_ = Task();
            fieldChanged();
            auto const held = std::exchange(heldRestore_, nullptr);
            if (!opens(place) && held)
                restore(*held);
        });
}

void BrowserModel::openPlace(FileUrl const& place, std::optional<FileUrl> const& file)
{
    setRoot(place, AlsoSelect::no);
    if (folders->size() != 1 || folders->front() != place) {
        selectFolders({ place }, FocusGallery::yes);
        pendingFileToShow_ = file;
    } else if (auto const index = indexOf(file)) {
        openViewer(*index);
    }
}

void BrowserModel::restoreLastFolders()
{
    if (*folder)
        return;
    auto const last = LastFolders::read(ports_.preferences);
    if (last.folders.empty())
        return;
    auto const look = [&files = ports_.files, last] {
        auto const isFolder = [&](FileUrl const& url) { return files.isFolder(url); };
        Restorable found;
        std::ranges::copy_if(last.folders, std::back_inserter(found.folders), isFolder);
        if (last.root && isFolder(*last.root))
            found.root = last.root;
        return found;
    };
    restoreTask_ = runThen(
        ports_.background, ports_.loop, Priority::userInitiated, look, [this](Restorable found) {
            restoreTask_ = Task();
            fieldChanged();
            if (openTask_)
                heldRestore_ = std::make_shared<Restorable>(std::move(found));
            else
                restore(found);
        });
}

void BrowserModel::restore(Restorable const& found)
{
    if (*folder || found.folders.empty())
        return;
    std::vector<FileUrl> kept;
    if (found.root)
        std::ranges::copy_if(found.folders, std::back_inserter(kept),
            [&](FileUrl const& url) { return url.isWithin(*found.root); });
    if (kept.empty()) {
        openPlace(found.folders.front(), std::nullopt);
        return;
    }
    setRoot(*found.root, AlsoSelect::no);
    selectFolders(std::move(kept), FocusGallery::yes);
}

void BrowserModel::setRoot(FileUrl const& url, AlsoSelect alsoSelect)
{
    auto const root = url.standardized();
    rootFolder = root;
    LastFolders::writeRoot(ports_.preferences, root);
    folderWatcher_.watch(root);
    if (alsoSelect == AlsoSelect::no)
        return;
    selectFolders({ root }, FocusGallery::yes);
    setRecentFolders(recents::with(recentFolders, root));
}

bool BrowserModel::canGoUp() const
{
    return *rootFolder && *rootFolder != FileUrl("/");
}

void BrowserModel::showParentFolder()
{
    if (canGoUp())
        setRoot((*rootFolder)->parent(), AlsoSelect::no);
}

void BrowserModel::selectFolders(std::vector<FileUrl> urls, FocusGallery focusGallery)
{
    for (auto& url : urls)
        url = url.standardized();
    std::ranges::stable_sort(urls, [this](FileUrl const& a, FileUrl const& b) {
        auto const order = ports_.textOrder.compare(a.path(), b.path());
        return order == 0 ? a < b : order < 0;
    });
    if (urls.empty() || urls == *folders)
        return;

    // A choice made by hand is newer than a place that is still being looked at.
    openTask_ = Task();
    heldRestore_ = nullptr;

    stopSlideshow();
    pendingFileToShow_ = std::nullopt;
    folder = urls.front();
    folders = std::move(urls);
    photos_.clear(viewChoice());
    selection = UrlSet();
    searchText = std::string();
    lastTrashed_.clear();
    canUndoTrash = false;
    LastFolders::write(ports_.preferences, folders);
    if (focusGallery == FocusGallery::yes && window_)
        window_->focusGallery();
    startScan();
}

} // namespace pixelhain
