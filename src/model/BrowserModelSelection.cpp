#include "model/BrowserModel.h"
#include "model/CursorRules.h"
#include "model/KeyEvent.h"
#include "model/SelectionRules.h"
#include "ports/MainWindow.h"
#include <algorithm>

namespace pixelhain {

void BrowserModel::click(std::size_t index, ClickModifiers modifiers)
{
    if (index >= items->size())
        return;
    if (window_)
        window_->focusGallery();
    if (modifiers.command) {
        toggle(index);
        anchor_ = index;
    } else if (modifiers.shift) {
        mark(anchor_.value_or(cursor->value_or(index)), index);
    } else {
        anchor_ = index;
        openViewer(index);
    }
    cursor = index;
}

void BrowserModel::toggle(std::size_t index)
{
    if (index >= items->size())
        return;
    // One that waits may find the photo gone.
    photos_.inTurn([this, photo = (*items)[index]] {
        if (placeOf(photo))
            toggleMark(selection.edit(), photo.url);
    });
}

// A range only ever adds.
void BrowserModel::mark(std::size_t from, std::size_t to)
{
    auto const last = std::min(std::max(from, to), items->size() - 1);
    UrlSet urls;
    for (auto i = std::min(from, to); i <= last; ++i)
        urls.insert((*items)[i].url);
    photos_.inTurn([this, urls = std::move(urls)] {
        auto const present = markedPhotos(urls, *items);
        selection.edit().insert(present.begin(), present.end());
    });
}

void BrowserModel::selectAll()
{
    photos_.whenShown(
        PhotoFilter::Purpose::marks, [this] { selection.replace(allPhotos(*items)); });
}

void BrowserModel::selectNone()
{
    photos_.inTurn([this] { selection = UrlSet(); });
}

void BrowserModel::invertSelection()
{
    photos_.whenShown(PhotoFilter::Purpose::marks,
        [this] { selection.replace(invertedSelection(selection, *items)); });
}

void BrowserModel::moveCursor(std::ptrdiff_t delta, Extend extend)
{
    if (items->empty())
        return;
    auto const index = movedCursor(cursor, delta, items->size());
    if (extend == Extend::yes) {
        anchor_ = anchor_.value_or(cursor->value_or(index));
        mark(*anchor_, index);
    } else {
        anchor_ = index;
    }
    cursor = index;
}

void BrowserModel::placeCursor()
{
    photos_.whenShown(PhotoFilter::Purpose::marks, [this] {
        if (!*cursor)
            moveCursor(+1, Extend::no);
    });
}

std::vector<FileUrl> BrowserModel::actionTargets() const
{
    if (auto const photo = urlAt(viewerIndex))
        return { *photo };
    if (photos_.isUnderWay())
        return {};
    if (!selection->empty())
        return markedPhotos(selection, *items);
    if (auto const photo = urlAt(cursor))
        return { *photo };
    return {};
}

} // namespace pixelhain
