#include "qt/window/CellPictures.h"
#include "ports/Background.h"
#include "qt/window/DrawnPicture.h"
#include <utility>

namespace pixelhain {

CellPictures::CellPictures(
    Background& background, MainLoop& loop, std::function<void(DrawnCell const&)> arrived)
    : background_(background)
    , loop_(loop)
    , arrived_(std::move(arrived))
{
}

void CellPictures::beginUpdate()
{
    before_ = std::exchange(cells_, {});
}

DrawnCell& CellPictures::show(std::size_t index, ThumbnailCell const& shown, int edge)
{
    auto const& url = shown.item.url;
    auto& cell = cells_[url];
    if (!cell)
        if (auto const known = before_.find(url); known != before_.end())
            cell = std::move(known->second);
    if (!cell)
        cell = std::make_unique<DrawnCell>();
    cell->index = index;
    auto const& image = shown.drawn();
    auto const size = drawnSize(shown.drawnShape(), edge);
    if (image && (cell->source != image || cell->size != size)) {
        cell->source = image;
        cell->size = size;
        cell->isEmbedded = !shown.image;
        bring(url, *cell);
    } else if (!image && cell->isEmbedded) {
        // There is no picture, and nothing stands for none.
        cell->source = nullptr;
        cell->isEmbedded = false;
        cell->scaling = Task();
        cell->picture = QImage();
    }
    return *cell;
}

void CellPictures::endUpdate()
{
    for (auto const& [url, cell] : before_)
        if (cell)
            keep(url, *cell);
    before_.clear();
}

DrawnCell* CellPictures::find(FileUrl const& url)
{
    auto const found = cells_.find(url);
    return found == cells_.end() ? nullptr : found->second.get();
}

DrawnCell const* CellPictures::find(FileUrl const& url) const
{
    auto const found = cells_.find(url);
    return found == cells_.end() ? nullptr : found->second.get();
}

void CellPictures::forgetLines()
{
    for (auto const& [url, cell] : cells_) {
        cell->name = {};
        cell->resolution = {};
    }
}

void CellPictures::bring(FileUrl const& url, DrawnCell& cell)
{
    auto const kept = kept_.find(url);
    if (kept && kept->size == cell.size && kept->source.lock() == cell.source) {
        cell.scaling = Task();
        cell.picture = kept->picture;
        return;
    }
    make(cell);
}

void CellPictures::make(DrawnCell& cell)
{
    auto const& bitmap = cell.source->image;
    if (cell.size == bitmap.size) {
        cell.scaling = Task();
        cell.picture = imageOf(bitmap);
        return;
    }
    cell.scaling = runThen(
        background_, loop_, Priority::userInteractive,
        [source = cell.source, size = cell.size] { return drawnPicture(source->image, size); },
        [this, &cell](QImage picture) {
            cell.scaling = Task();
            cell.picture = std::move(picture);
            arrived_(cell);
        });
}

void CellPictures::keep(FileUrl const& url, DrawnCell const& cell)
{
    if (cell.picture.isNull() || cell.isPending() || cell.isEmbedded)
        return;
    auto const bytes = static_cast<std::size_t>(cell.picture.sizeInBytes());
    kept_.store(
        url, std::make_shared<Kept const>(Kept { cell.source, cell.size, cell.picture }), bytes);
}

} // namespace pixelhain
