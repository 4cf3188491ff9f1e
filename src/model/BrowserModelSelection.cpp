#include "model/BrowserModel.h"

namespace pixelhain {

void BrowserModel::toggle(std::size_t index)
{
    if (index >= items->size())
        return;
    auto marked = selection.get();
    auto const& url = (*items)[index].url;
    if (marked.erase(url) == 0)
        marked.insert(url);
    selection.replace(std::move(marked));
}

void BrowserModel::selectNone()
{
    selection = std::set<FileUrl>();
}

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

void BrowserModel::stopSlideshow()
{
    slideshow_ = {};
    isSlideshow = false;
    isSlideshowPaused = false;
}

} // namespace pixelhain
