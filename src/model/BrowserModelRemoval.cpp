#include "model/BrowserModel.h"
#include "model/CursorRules.h"
#include "model/SelectionRules.h"
#include "model/ViewerNeighbours.h"
#include <vector>

namespace pixelhain {

void BrowserModel::removeItems(UrlSet const& urls)
{
    if (urls.empty())
        return;
    if (*isSlideshow)
        stopSlideshow();
    countsVersion = countsVersion + 1;
    if (isScanUnderWay_)
        removedWhileScanning_.insert(urls.begin(), urls.end());
    auto& marked = selection.edit();
    for (auto const& url : urls)
        marked.erase(url);

    auto const gone = membership(urls, *items);
    // Commands that wait are meant for what will then be in the viewer.
    auto const successor = [&](FileUrl const& url) { return urlAt(survivor(indexOf(url), gone)); };
    for (auto& command : fileWork_.waiting())
        command.targets.follow(urls, successor);
    photos_.remove(urls);
    auto const after = [&](std::optional<std::size_t> index) -> std::optional<std::size_t> {
        auto const kept = survivor(index, gone);
        return kept ? std::optional(indexAfterRemoval(*kept, gone)) : std::nullopt;
    };
    auto const newViewer = after(viewerIndex);
    auto const newCursor = after(cursor);
    anchor_ = after(anchor_);
    removePhotos(items.edit(), gone);
    cursor = newCursor;
    showInViewer(newViewer, ViewerTransition::none);
    if (newViewer)
        prefetch(viewerNeighbours(*newViewer, items->size(), ViewerDirection::forward));
}

} // namespace pixelhain
