#include "model/BrowserModel.h"
#include "ports/MainWindow.h"
#include <algorithm>

namespace pixelhain {

void BrowserModel::openViewer(std::size_t index)
{
    if (index >= items->size())
        return;
    cursor = index;
    viewerIndex = index;
}

void BrowserModel::closeViewer()
{
    stopSlideshow();
    if (*viewerIndex)
        cursor = viewerIndex.get();
    viewerIndex = std::nullopt;
}

void BrowserModel::stepViewer(std::ptrdiff_t delta)
{
    if (!*viewerIndex || items->empty())
        return;
    auto const shown = static_cast<std::ptrdiff_t>(**viewerIndex);
    auto const last = static_cast<std::ptrdiff_t>(items->size()) - 1;
    auto const index = std::clamp(shown + delta, std::ptrdiff_t { 0 }, last);
    if (index != shown)
        openViewer(static_cast<std::size_t>(index));
    else if (window_)
        window_->beep();
}

void BrowserModel::markInViewer()
{
    auto const index = viewerIndex.get();
    if (!index || *index >= items->size())
        return;
    toggle(*index);
    if (selection->contains((*items)[*index].url) && *index + 1 < items->size())
        stepViewer(+1);
}

bool BrowserModel::toggleSlideshow()
{
    if (!*isSlideshow)
        return false;
    stopSlideshow();
    return true;
}

void BrowserModel::stopSlideshow()
{
    slideshow_ = {};
    isSlideshow = false;
    isSlideshowPaused = false;
}

} // namespace pixelhain
