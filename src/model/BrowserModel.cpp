#include "model/BrowserModel.h"
#include "base/Text.h"
#include "model/Messages.h"
#include "model/PhotoOrder.h"
#include "model/RecentFolders.h"
#include "model/Settings.h"
#include "ports/Background.h"
#include "ports/MainLoop.h"
#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace pixelhain {

BrowserModel::BrowserModel(Ports const& ports)
    : BrowserFields(
        [&loop = ports.loop](std::function<void()> work) { loop.post(std::move(work)); })
    , ports_(ports)
    , photoTest_(std::make_shared<PhotoTest>(ports.imageTypes))
    , folderWatcher_(ports.folderEvents, [this] { refreshTree(); })
    , photos_(
          ports.background, ports.loop, ports.textOrder,
          [this](std::vector<PhotoItem> visible, PhotoFilter::Scan scan) {
              return showItems(std::move(visible), scan);
          },
          [this](bool searches) { isSearching = searches; })
    , fileWork_(ports.background, ports.loop,
          [this](std::optional<FileProgress> progress) { fileProgress = progress; })
    , pageWork_(ports.background, ports.loop,
          [this](std::optional<FileProgress> progress) { pageProgress = progress; })
{
    auto const stored = Settings::read(ports.preferences);
    sortKey = stored.sortKey;
    ascending = stored.ascending;
    includeSubfolders = stored.includeSubfolders;
    thumbSize = stored.thumbSize;
    showFilenames = stored.showFilenames;
    showResolution = stored.showResolution;
    slideshowInterval = stored.slideshowInterval;
    slideshowShuffle = stored.slideshowShuffle;
    recentFolders = recents::read(ports.preferences);
}

BrowserModel::~BrowserModel() = default;

void BrowserModel::reload()
{
    refreshTree();
    startScan();
}

void BrowserModel::refreshTree()
{
    treeVersion = treeVersion + 1;
    countsVersion = countsVersion + 1;
}

void BrowserModel::applyFilter()
{
    photos_.choose(viewChoice());
}

// The viewer and the cursor stay with their photos, wherever those now stand.
std::vector<PhotoItem> BrowserModel::showItems(
    std::vector<PhotoItem> visible, PhotoFilter::Scan scan)
{
    if (scan == PhotoFilter::Scan::completed)
        return items.replace(std::move(visible));
    auto const itemAt = [this](std::optional<std::size_t> index) {
        return index && *index < items->size() ? std::optional((*items)[*index]) : std::nullopt;
    };
    auto const inViewer = itemAt(viewerIndex);
    auto const atCursor = itemAt(cursor);
    std::vector<PhotoItem> before;
    if (!(visible.empty() && items->empty()))
        before = items.replace(std::move(visible));
    auto const place = [&](std::optional<PhotoItem> const& photo) -> std::optional<std::size_t> {
        if (!photo)
            return std::nullopt;
        auto const found = placeOf(*photo);
        // Another scan may have found it changed.
        return found || scan == PhotoFilter::Scan::same ? found : indexOf(photo->url);
    };
    showInViewer(place(inViewer), ViewerTransition::none);
    cursor = atCursor == inViewer ? viewerIndex.get() : place(atCursor);
    anchor_ = std::nullopt;
    if (*isSlideshow) // else one may wait for just this list
        stopSlideshow();
    return before;
}

std::optional<std::size_t> BrowserModel::placeOf(PhotoItem const& photo) const
{
    auto const found = placeInOrder(*items, photo, photos_.shown(), ports_.textOrder);
    return found || !photo.isKnownByName() ? found : indexOf(photo.url);
}

std::optional<std::size_t> BrowserModel::indexOf(std::optional<FileUrl> const& url) const
{
    if (!url)
        return std::nullopt;
    auto const found = std::ranges::find(*items, *url, &PhotoItem::url);
    if (found == items->end())
        return std::nullopt;
    return static_cast<std::size_t>(found - items->begin());
}

std::optional<FileUrl> BrowserModel::urlAt(std::optional<std::size_t> index) const
{
    if (!index || *index >= items->size())
        return std::nullopt;
    return (*items)[*index].url;
}

std::string BrowserModel::windowTitle() const
{
    if (folders->empty())
        return std::string(messages::productName);
    if (folders->size() == 1)
        return displayText(folders->front().name());
    return messages::folderCount(folders->size());
}

void BrowserModel::setShowContactSheetDialog(bool shows)
{
    photos_.takeBack(PhotoFilter::Purpose::contactSheet);
    if (!shows)
        showContactSheetDialog = false;
    else
        photos_.whenShown(PhotoFilter::Purpose::contactSheet,
            [this] { showContactSheetDialog = !items->empty(); });
}

void BrowserModel::showStatus(std::string text)
{
    using namespace std::chrono_literals;
    status = std::move(text);
    statusTask_ = ports_.loop.after(5s, [this] { status = std::nullopt; });
}

} // namespace pixelhain
