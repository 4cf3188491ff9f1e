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

DrawnCell& CellPictures::show(
    FileUrl const& url, std::size_t index, ImageRef const& image, int edge)
{
    auto& cell = cells_[url];
    if (!cell)
        if (auto const known = before_.find(url); known != before_.end())
            cell = std::move(known->second);
    if (!cell)
        cell = std::make_unique<DrawnCell>();
    cell->index = index;
    if (image && (cell->source != image || cell->edge != edge)) {
        cell->source = image;
        cell->edge = edge;
        bring(url, *cell);
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
    if (kept && kept->edge == cell.edge && kept->source.lock() == cell.source) {
        cell.scaling = Task();
        cell.picture = kept->picture;
        return;
    }
    make(cell);
}

void CellPictures::make(DrawnCell& cell)
{
    auto const& bitmap = cell.source->image;
    if (drawnSize(bitmap.size, cell.edge) == bitmap.size) {
        cell.scaling = Task();
        cell.picture = imageOf(bitmap);
        return;
    }
    cell.scaling = runThen(
        background_, loop_, Priority::userInteractive,
        [source = cell.source, edge = cell.edge] { return drawnPicture(source->image, edge); },
        [this, &cell](QImage picture) {
            cell.scaling = Task();
            cell.picture = std::move(picture);
            arrived_(cell);
        });
}

void CellPictures::keep(FileUrl const& url, DrawnCell const& cell)
{
    if (cell.picture.isNull() || cell.isPending())
        return;
    auto const bytes = static_cast<std::size_t>(cell.picture.sizeInBytes());
    kept_.store(
        url, std::make_shared<Kept const>(Kept { cell.source, cell.edge, cell.picture }), bytes);
}

} // namespace pixelhain
