#include "qt/window/GridWidget.h"
#include "base/Text.h"
#include "model/BrowserModel.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/GalleryAccessible.h"
#include <QDrag>
#include <QEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace pixelhain {

GridWidget::GridWidget(Services const& services, QWidget* parent)
    : QAbstractScrollArea(parent)
    , runDrag([](QDrag* drag) { drag->exec(Qt::CopyAction); })
    , services_(services)
    , view_(services.model, services.thumbnails, services.loop,
          [this](FileUrl const& url) { cellChanged(url); })
    , pictures_(services.background, services.loop,
          [this](DrawnCell const& cell) { updateCell(cell.index); })
    , motion_([this](double position) { moveTo(position); })
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAttribute(Qt::WA_NoSystemBackground);
    viewport()->setMouseTracking(true);
    GalleryAccessible::install();
    setAccessibleName(shownText(GridView::name));
}

GalleryAccessible* GridWidget::accessible()
{
    return dynamic_cast<GalleryAccessible*>(QAccessible::queryAccessibleInterface(this));
}

void GridWidget::scrollTo(double top)
{
    motion_.stop();
    moveTo(top);
}

void GridWidget::renewPainter()
{
    view_.displayScale = devicePixelRatioF();
    painter_ = std::make_unique<CellPainter>(palette(), font(), view_.displayScale);
    pictures_.forgetLines();
}

void GridWidget::modelChanged()
{
    if (shownFolders_.changed(*services_.model.folders)) {
        motion_.stop();
        first_.reset();
        top_ = 0;
        beforeSearch_.reset();
    }
    followSearch();
    layOut();
    // A page that is being turned may bring the cursor into view by itself.
    auto const goal = scrollGoal();
    auto const wish = view_.scrollWish(goal, viewportHeight());
    if (wish && std::abs(*wish - goal) >= 1) {
        motion_.stop();
        moveTo(*wish);
    }
    viewport()->update();
    if (auto* const list = accessible())
        list->modelChanged();
}

// What is found is shown from its first photo on; whoever ends the search is back where it began.
void GridWidget::followSearch()
{
    auto const& text = services_.model.shownChoice().searchText;
    if (!shownSearch_.changed(text))
        return;
    motion_.stop();
    if (trimmedBlanks(text).empty()) {
        if (auto const before = std::exchange(beforeSearch_, std::nullopt))
            std::tie(first_, top_) = *before;
        return;
    }
    if (!beforeSearch_)
        beforeSearch_.emplace(first_, top_);
    first_.reset();
    top_ = 0;
}

void GridWidget::catchUp()
{
    if (!view_.isCurrent())
        modelChanged();
}

// The photo at the top stays where it is, however the columns fall. It is the same one until the
// next scroll: taking another after each change would move the page with every resize.
void GridWidget::layOut()
{
    if (!painter_)
        renewPainter();
    // Fonts that nothing shows are not looked for.
    view_.layOut(viewport()->width(),
        services_.model.items->empty() ? GridView::LineHeights {}
                                       : painter_->captions().lineHeights());
    auto const held = first_ && top_ > 0 ? services_.model.placeOf(first_->photo) : std::nullopt;
    if (held) {
        first_->index = *held;
        first_->photo = (*services_.model.items)[*held]; // more may be known of it by now
        top_ = view_.layout().cell(*held).y - first_->offset;
    }
    top_ = view_.layout().clampedScroll(top_, viewportHeight());
    updateScrollBar();
    showCells();
    updateHover();
    if (!held)
        first_ = anchor();
}

void GridWidget::showCells()
{
    view_.showRows(top_, viewportHeight(), motion_.isMoving() ? motion_.goal() : top_);
    auto const ready = view_.kept();
    auto const inView = view_.inView();
    pictures_.beginUpdate();
    for (auto index = inView.first; index < inView.last; ++index)
        showCell(index);
    for (auto index = ready.first; index < ready.last; ++index)
        if (!inView.contains(index))
            showCell(index);
    pictures_.endUpdate();
}

void GridWidget::showCell(std::size_t index)
{
    auto const cell = view_.cell(index);
    pictures_.show(index, cell, painter_->pictureEdge(cell.size));
}

std::optional<GridWidget::Anchor> GridWidget::anchor() const
{
    auto const inView = view_.inView();
    auto const& items = *services_.model.items;
    if (inView.empty() || inView.first >= items.size())
        return std::nullopt;
    return Anchor { items[inView.first], inView.first, view_.layout().cell(inView.first).y - top_ };
}

long long GridWidget::devicePixels(double points) const
{
    return std::llround(points * view_.displayScale);
}

// The bar counts device pixels, or a multiple of them where the content is too high to count.
void GridWidget::updateScrollBar()
{
    constexpr double mostSteps = 1e9;
    auto const scale = view_.displayScale;
    auto const height = view_.layout().contentHeight() * scale;
    auto const hidden = std::max(0.0, height - viewportHeight() * scale);
    barUnit_ = std::max(1.0, height / mostSteps);
    isSettingBar_ = true;
    auto* bar = verticalScrollBar();
    bar->setRange(0, static_cast<int>(std::ceil(hidden / barUnit_)));
    bar->setPageStep(static_cast<int>(std::lround(viewportHeight() * scale / barUnit_)));
    bar->setSingleStep(
        std::max(1, static_cast<int>(std::lround(pointsPerLine * scale / barUnit_))));
    bar->setValue(static_cast<int>(std::lround(top_ * scale / barUnit_)));
    isSettingBar_ = false;
}

void GridWidget::scrollContentsBy(int, int)
{
    if (!isSettingBar_)
        scrollTo(verticalScrollBar()->value() * barUnit_ / view_.displayScale);
}

void GridWidget::moveTo(double top)
{
    auto const height = viewportHeight();
    auto const before = devicePixels(top_);
    auto const after = devicePixels(view_.layout().clampedScroll(top, height));
    if (before == after) {
        if (!motion_.isMoving())
            showCells(); // what was on its way is not any more
        return;
    }
    top_ = static_cast<double>(after) / view_.displayScale;
    showCells();
    first_ = anchor();
    updateScrollBar();
    scrollPixels(before, after);
    updateHover();
}

// What stays in view is moved, not painted again, where the way is a whole number of points and
// points are whole pixels; elsewhere the toolkit could not move it exactly.
void GridWidget::scrollPixels(long long before, long long after)
{
    isComplete_ = false;
    isFilled_ = false;
    auto const scale = static_cast<long long>(view_.displayScale);
    auto const way = before - after;
    bool const isWhole = static_cast<double>(scale) == view_.displayScale && way % scale == 0;
    if (isWhole && std::abs(way / scale) < viewport()->height())
        viewport()->scroll(0, static_cast<int>(way / scale));
    else
        viewport()->update();
}

void GridWidget::resizeEvent(QResizeEvent*)
{
    layOut();
    viewport()->update();
}

void GridWidget::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    auto const type = event->type();
    if (type != QEvent::PaletteChange && type != QEvent::FontChange && type != QEvent::StyleChange)
        return;
    painter_.reset();
    layOut();
    viewport()->update();
}

bool GridWidget::showsAllSizes() const
{
    auto const inView = view_.inView();
    for (auto index = inView.first; index < inView.last; ++index)
        if (auto const cell = view_.cell(index); cell.image && !cell.meta)
            return false;
    return isComplete_ || inView.empty();
}

bool GridWidget::isIdle() const
{
    auto const ready = view_.kept();
    for (auto index = ready.first; index < ready.last; ++index) {
        auto const cell = view_.cell(index);
        auto const* drawn = pictures_.find(cell.item.url);
        if ((!cell.image && !cell.failed) || !drawn || drawn->isPending())
            return false;
    }
    return isComplete_ && !motion_.isMoving();
}

} // namespace pixelhain
