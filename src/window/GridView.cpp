#include "window/GridView.h"
#include "model/BrowserModel.h"
#include "model/SelectionRules.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// Before the first layout there is room for one cell and no photo.
GridLayout emptyLayout(double thumbSize)
{
    GridLayout::Measures measures;
    measures.thumbSize = thumbSize;
    return GridLayout(measures);
}

} // namespace

GridView::GridView(BrowserModel& model, ThumbnailSource& source, MainLoop& loop,
    std::function<void(FileUrl const&)> cellChanged)
    : model_(model)
    , source_(source)
    , cellChanged_(std::move(cellChanged))
    , layout_(emptyLayout(model.thumbSize))
    , forecast_(loop, [this] { takeTurns(); })
{
    cursor_.changed({ model.cursor, model.cursorVersion });
    viewerOpen_.changed(model.viewerIndex->has_value());
}

void GridView::layOut(double width, LineHeights const& heights)
{
    GridLayout::Measures measures;
    measures.width = width;
    measures.thumbSize = model_.thumbSize;
    measures.nameLineHeight = model_.showFilenames ? heights.name : 0;
    measures.resolutionLineHeight = model_.showResolution ? heights.resolution : 0;
    measures.count = model_.items->size();
    layout_ = GridLayout(measures);
    model_.setColumns(layout_.columns());
    // Another list begins at its top: nobody scrolled there.
    if (first_.changed(measures.count > 0 ? (*model_.items)[0].url : FileUrl()))
        forecast_.forget();
}

void GridView::showRows(double top, double height, double goal)
{
    inView_ = layout_.visible(top, height, 0);
    kept_ = layout_.visible(top, height, rowsAhead);
    height_ = height;
    goal_ = goal;
    if (goal == top)
        forecast_.moveTo(goal);
    else
        forecast_.headFor(goal);
    Cells kept;
    std::uint32_t rank = 0;
    for (auto const index : inOrder())
        keep(index, { wishFor(index), rank++ }, kept);
    cells_ = std::move(kept);
    if (std::exchange(hasNewTurns_, false))
        source_.turnsChanged();
}

void GridView::keep(std::size_t index, Turn::Place turn, Cells& kept)
{
    auto const& items = *model_.items;
    if (index >= items.size())
        return;
    auto const& url = items[index].url;
    auto& cell = kept[url];
    if (auto const known = cells_.find(url); known != cells_.end())
        cell = std::move(known->second);
    bool const isNew = !cell;
    if (isNew)
        cell = std::make_unique<ThumbnailCellLoads>(source_, [this, url] { cellChanged_(url); });
    if (cell->setTurn(turn) && !isNew)
        hasNewTurns_ = true;
    cell->show(url, thumbnailPixelSize(model_.thumbSize, displayScale));
}

// What is in view, then the row that comes next, then the one that was left.
std::vector<std::size_t> GridView::inOrder() const
{
    std::vector<std::size_t> order;
    order.reserve(kept_.count());
    bool const isUpward = forecast_.isUpward();
    auto const add = [&](std::size_t first, std::size_t last) {
        for (auto index = first; index < last; ++index)
            order.push_back(isUpward ? last - 1 - (index - first) : index);
    };
    auto const above = [&] { add(kept_.first, std::min(inView_.first, kept_.last)); };
    auto const below = [&] { add(std::max(inView_.last, kept_.first), kept_.last); };
    add(inView_.first, inView_.last);
    if (isUpward)
        above();
    below();
    if (!isUpward)
        above();
    return order;
}

IndexRange GridView::viewAfter(int beats) const
{
    auto const top = layout_.clampedScroll(goal_ + forecast_.way(beats), height_);
    return layout_.visible(top, height_, rowsAhead);
}

Turn::Wish GridView::wishFor(std::size_t index) const
{
    bool const isInView = inView_.contains(index);
    bool const hasLeapt = forecast_.leap() > height_;
    if (!hasLeapt && viewAfter(loadBeats).contains(index))
        return isInView ? Turn::Wish::load : Turn::Wish::loadAhead;
    return isInView && viewAfter(glanceBeats).contains(index) ? Turn::Wish::glance
                                                              : Turn::Wish::nothing;
}

// Time has passed, and the movement goes on at another speed or has ended.
void GridView::takeTurns()
{
    auto const& items = *model_.items;
    bool isNew = false;
    std::uint32_t rank = 0;
    for (auto const index : inOrder()) {
        auto const cell = index < items.size() ? cells_.find(items[index].url) : cells_.end();
        if (cell != cells_.end())
            isNew = cell->second->setTurn({ wishFor(index), rank++ }) || isNew;
    }
    if (isNew)
        source_.turnsChanged();
}

bool GridView::isComplete() const
{
    auto const& items = *model_.items;
    for (auto index = inView_.first; index < inView_.last && index < items.size(); ++index) {
        auto const found = cells_.find(items[index].url);
        if (found == cells_.end() || !found->second->isSettled())
            return false;
    }
    return true;
}

BytesRead GridView::bytesRead() const
{
    auto const& items = *model_.items;
    BytesRead all;
    for (auto index = inView_.first; index < inView_.last && index < items.size(); ++index)
        if (auto const found = cells_.find(items[index].url); found != cells_.end()) {
            auto const [pictures, looks] = found->second->bytesRead();
            all.pictures += pictures;
            all.looks += looks;
        }
    return all;
}

bool GridView::isCurrent() const
{
    return layout_.measures().count == model_.items->size();
}

ThumbnailCell GridView::cell(std::size_t index) const
{
    ThumbnailCell cell;
    if (index >= model_.items->size())
        return cell;
    cell.item = (*model_.items)[index];
    cell.size = model_.thumbSize;
    cell.pixel = thumbnailPixelSize(model_.thumbSize, displayScale);
    cell.isSelected = model_.selection->contains(cell.item.url);
    cell.isCursor = *model_.cursor == index;
    cell.selectionActive = !model_.selection->empty();
    cell.showName = model_.showFilenames;
    cell.showResolution = model_.showResolution;
    cell.hovering = hovered() == index;
    cell.onToggle = [&model = model_, index] { model.toggle(index); };
    if (auto const found = cells_.find(cell.item.url); found != cells_.end()) {
        cell.image = found->second->image();
        cell.embedded = found->second->embedded();
        cell.meta = found->second->meta();
        cell.failed = found->second->failed();
    }
    return cell;
}

std::optional<std::size_t> GridView::hovered() const
{
    return pointer_ ? layout_.indexAt(*pointer_) : std::nullopt;
}

std::optional<GridView::Hit> GridView::hit(Point point) const
{
    auto const index = layout_.indexAt(point);
    if (!index || *index >= model_.items->size())
        return std::nullopt;
    auto const shown = cell(*index);
    auto const area = layout_.thumbnailArea(*index);
    auto const circle = shown.circleRect();
    Rect const reach { area.x + circle.x - circleReach, area.y + circle.y - circleReach,
        circle.width + 2 * circleReach, circle.height + 2 * circleReach };
    return Hit { *index, shown.showsCircle() && reach.contains(point) };
}

std::vector<FileUrl> GridView::dragged(std::size_t index) const
{
    auto const& items = *model_.items;
    if (index >= items.size())
        return {};
    auto const& photo = items[index].url;
    if (!model_.selection->contains(photo))
        return { photo };
    return markedPhotos(model_.selection, items);
}

GridView::Page GridView::page(PageTurn turn, double top, double height) const
{
    bool const isForward = turn == PageTurn::forward;
    auto const way = isForward ? 1.0 : -1.0;
    auto const count = layout_.measures().count;
    auto const cursor = model_.cursor.get();
    if (!cursor || *cursor >= count || !layout_.visible(top, height, 0).contains(*cursor)) {
        auto const step = std::max(height - pageOverlap, height / 2);
        return { 0, layout_.clampedScroll(top + way * step, height) };
    }
    auto const columns = static_cast<std::size_t>(layout_.columns());
    auto const rows = layout_.rowsPerPage(height);
    auto const row = *cursor / columns;
    auto const last = layout_.rows() - 1;
    auto const target = isForward ? std::min(row + rows, last) : row - std::min(rows, row);
    auto const index = std::min(target * columns + *cursor % columns, count - 1);
    auto const turned
        = layout_.clampedScroll(top + way * static_cast<double>(rows) * layout_.rowStep(), height);
    return { static_cast<std::ptrdiff_t>(index) - static_cast<std::ptrdiff_t>(*cursor),
        layout_.scrollToShow(index, turned, height) };
}

std::optional<double> GridView::scrollWish(double top, double height)
{
    bool const cursorMoved = cursor_.changed({ model_.cursor, model_.cursorVersion });
    bool const viewerToggled = viewerOpen_.changed(model_.viewerIndex->has_value());
    auto const cursor = model_.cursor.get();
    if (!cursor || *cursor >= layout_.measures().count)
        return std::nullopt;
    if (viewerToggled && !*model_.viewerIndex)
        return layout_.scrollToCentre(*cursor, height);
    if (cursorMoved)
        return layout_.scrollToShow(*cursor, top, height);
    return std::nullopt;
}

} // namespace pixelhain
