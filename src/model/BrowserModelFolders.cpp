#include "model/BrowserModel.h"
#include "model/DiscardedPhotos.h"
#include "model/Messages.h"
#include "model/RecentFolders.h"
#include "model/Scanning.h"
#include "model/SelectionRules.h"
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

// What a scan saw of the model when it started, so that it can also do the model's part of the
// work; each part is used only if the model has not changed since.
struct BrowserModel::ScanAnswer {
    int generation = 0;
    std::shared_ptr<PhotoList> found;
    ViewChoice choice; ///< what `visible` was derived for
    std::vector<PhotoItem> visible;
    UrlSet selected;
    UrlSet stillSelected;

    void takeOut(UrlSet const& removed);
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

// A scan does in the background whatever costs time for many photos: it also orders them, derives
// the visible list and looks for marked photos that have gone.
void BrowserModel::startScan()
{
    if (folders->empty())
        return;
    ++scanGeneration_;
    removedWhileScanning_.clear();
    isLoading = true;
    auto const scan = [generation = scanGeneration_, photoTest = photoTest_, &files = ports_.files,
                          &textOrder = ports_.textOrder, places = folders.get(),
                          recursive = includeSubfolders.get(), selected = selection.get(),
                          choice = viewChoice()] {
        ScanTools const tools { files, *photoTest, textOrder };
        ScanAnswer answer;
        answer.generation = generation;
        auto found = scanFolders(tools, places, recursive);
        answer.found = std::make_shared<PhotoList>(std::move(found.items), std::move(found.index));
        answer.choice = choice;
        answer.visible = answer.found->visible(choice, textOrder);
        answer.selected = selected;
        answer.stillSelected = stillPresent(selected, answer.found->items());
        return answer;
    };
    scanTask_ = runThen(ports_.background, ports_.loop, Priority::userInitiated, scan,
        [this](ScanAnswer answer) { accept(std::move(answer)); });
}

void BrowserModel::ScanAnswer::takeOut(UrlSet const& removed)
{
    if (removed.empty())
        return;
    found->remove(membership(removed, found->items()));
    removePhotos(visible, membership(removed, visible));
    std::erase_if(stillSelected, [&](FileUrl const& url) { return removed.contains(url); });
}

// Another text or order was chosen during the scan of a long list.
void BrowserModel::deriveAgain(ScanAnswer answer)
{
    discardPhotos(ports_.background, std::exchange(answer.visible, {}));
    auto derive
        = [answer = std::move(answer), choice = viewChoice(), &order = ports_.textOrder]() mutable {
              answer.choice = choice;
              answer.visible = answer.found->visible(choice, order);
              return std::move(answer);
          };
    scanTask_ = runThen(ports_.background, ports_.loop, Priority::userInitiated, std::move(derive),
        [this](ScanAnswer again) { accept(std::move(again)); });
}

void BrowserModel::accept(ScanAnswer answer)
{
    if (answer.generation != scanGeneration_)
        return;
    if (auto const choice = viewChoice(); answer.choice != choice) {
        if (!answer.found->isQuick())
            return deriveAgain(std::move(answer));
        answer.visible = answer.found->visible(choice, ports_.textOrder);
    }
    isLoading = false;
    // The scan may have seen photos that have been taken away since.
    answer.takeOut(std::exchange(removedWhileScanning_, {}));
    // What left its folder for good before the scan came by is followed as if it were done.
    if (!leaving_.empty())
        removeItems(vanishedPhotos(leaving_, *items, answer.found->items()));
    selection = *selection == answer.selected ? std::move(answer.stillSelected)
                                              : stillPresent(selection, answer.found->items());
    photos_.replace(std::move(answer.found), viewChoice(), std::move(answer.visible));
    if (auto const file = std::exchange(pendingFileToShow_, std::nullopt))
        if (auto const index = indexOf(file))
            openViewer(*index);
}

} // namespace pixelhain
