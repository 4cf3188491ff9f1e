#include "model/BrowserModel.h"
#include "model/SelectionRules.h"
#include "model/ViewerNeighbours.h"
#include "ports/MainWindow.h"
#include "ports/PicturePrefetch.h"
#include <algorithm>

namespace pixelhain {

void BrowserModel::openViewer(std::size_t index)
{
    if (index >= items->size())
        return;
    cursor = index;
    showInViewer(index, ViewerTransition::none);
    prefetch(viewerNeighbours(index, items->size(), ViewerDirection::forward));
}

void BrowserModel::closeViewer()
{
    stopSlideshow();
    if (*viewerIndex)
        cursor = viewerIndex.get();
    showInViewer(std::nullopt, ViewerTransition::none);
}

void BrowserModel::stepViewer(std::ptrdiff_t delta)
{
    if (*isSlideshow) {
        stepSlideshow(delta);
        return;
    }
    if (!*viewerIndex || items->empty())
        return;
    auto const last = static_cast<std::ptrdiff_t>(items->size()) - 1;
    auto const target = static_cast<std::ptrdiff_t>(**viewerIndex) + delta;
    auto const index = static_cast<std::size_t>(std::clamp(target, std::ptrdiff_t { 0 }, last));
    if (index == **viewerIndex) {
        if (window_)
            window_->beep();
        return;
    }
    auto const direction = delta < 0 ? ViewerDirection::backward : ViewerDirection::forward;
    cursor = index;
    showInViewer(index, ViewerTransition::none);
    prefetch(viewerNeighbours(index, items->size(), direction));
}

void BrowserModel::markInViewer()
{
    auto const index = viewerIndex.get();
    if (!index || *index >= items->size())
        return;
    // At once, whatever waits for a search: what is seen is meant.
    auto const isMarked = toggleMark(selection.edit(), (*items)[*index].url);
    if (isMarked && !*isSlideshow && *index + 1 < items->size())
        stepViewer(+1);
}

void BrowserModel::showInViewer(std::optional<std::size_t> index, ViewerTransition transition)
{
    viewerIndex = index;
    viewerTransition = transition;
}

void BrowserModel::prefetch(std::vector<std::size_t> const& next)
{
    auto const shown = urlAt(viewerIndex);
    if (!shown)
        return;
    std::vector<FileUrl> urls;
    for (auto const index : next)
        urls.push_back((*items)[index].url);
    ports_.prefetch.prefetchDisplay(*shown, urls);
}

} // namespace pixelhain
