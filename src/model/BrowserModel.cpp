#include "model/BrowserModel.h"
#include "base/Text.h"
#include "model/DiscardedPhotos.h"
#include "model/Messages.h"
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
    showItems(index_.visible(allItems_, ports_.textOrder, searchText.get(), sortKey, ascending));
}

// The viewer and the cursor stay with their photos, wherever those now stand.
void BrowserModel::showItems(std::vector<PhotoItem> visible)
{
    auto const inViewer = urlAt(viewerIndex);
    auto const atCursor = urlAt(cursor);
    if (!(visible.empty() && items->empty()))
        discardPhotos(ports_.background, items.replace(std::move(visible)));
    showInViewer(indexOf(inViewer), ViewerTransition::none);
    cursor = atCursor == inViewer ? viewerIndex.get() : indexOf(atCursor);
    anchor_ = std::nullopt;
    stopSlideshow();
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
    showContactSheetDialog = shows && !items->empty();
}

void BrowserModel::showStatus(std::string text)
{
    using namespace std::chrono_literals;
    status = std::move(text);
    statusTask_ = ports_.loop.after(5s, [this] { status = std::nullopt; });
}

} // namespace pixelhain
