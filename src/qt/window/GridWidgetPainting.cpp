#include "model/BrowserModel.h"
#include "qt/window/GalleryAccessible.h"
#include "qt/window/GridWidget.h"
#include <QElapsedTimer>
#include <QPaintEvent>
#include <cmath>

namespace pixelhain {

namespace {

// Captions are laid out once per cell. When a whole page of new cells comes into view at once, what
// takes longer than this waits for the next frame, so that no frame is late.
constexpr qint64 captionNanoseconds = 1'500'000;

// Brings `painter` to whole device pixels that count from the widget's own corner: images are then
// copied, whatever the scale. The corner itself may lie between two pixels on fractional scales.
void useDevicePixels(QPainter& painter, double scale)
{
    auto const corner = painter.deviceTransform().map(QPointF(0, 0));
    auto const toCorner = QPointF(std::round(corner.x()), std::round(corner.y())) - corner;
    painter.setWorldTransform(QTransform::fromTranslate(toCorner.x() / scale, toCorner.y() / scale)
                                  .scale(1 / scale, 1 / scale));
}

// The pixels that `points` touches.
QRect touchedPixels(QRect const& points, double scale)
{
    auto const left = static_cast<int>(std::floor(points.left() * scale));
    auto const top = static_cast<int>(std::floor(points.top() * scale));
    auto const right = static_cast<int>(std::ceil((points.left() + points.width()) * scale));
    auto const bottom = static_cast<int>(std::ceil((points.top() + points.height()) * scale));
    return { left, top, right - left + 1, bottom - top + 1 };
}

} // namespace

void GridWidget::cellChanged(FileUrl const& url)
{
    if (auto const* drawn = pictures_.find(url)) {
        showCell(drawn->index);
        updateCell(drawn->index);
    }
    if (auto* const list = accessible())
        list->photoChanged(url);
}

void GridWidget::updateCell(std::size_t index)
{
    if (!view_.inView().contains(index)) {
        // There is no frame for it, but it may be the last one that was waited for.
        if (painted)
            painted();
        return;
    }
    isComplete_ = false;
    isFilled_ = false;
    auto const cell = view_.layout().cell(index);
    auto const area = QRectF(cell.x, cell.y - top_, cell.width, cell.height);
    viewport()->update(area.toAlignedRect().adjusted(-1, -1, 1, 1));
}

CellPainter::Place GridWidget::placeOf(std::size_t index) const
{
    auto const& layout = view_.layout();
    auto const scrolled = devicePixels(top_);
    auto const pixel = [&](Rect const& rect) {
        return QPoint(static_cast<int>(devicePixels(rect.x)),
            static_cast<int>(devicePixels(rect.y) - scrolled));
    };
    return { pixel(layout.thumbnailArea(index)), pixel(layout.nameLine(index)),
        pixel(layout.resolutionLine(index)) };
}

void GridWidget::paintEvent(QPaintEvent* event)
{
    catchUp();
    if (devicePixelRatioF() != view_.displayScale) {
        renewPainter();
        layOut();
        viewport()->update();
    }
    {
        QPainter painter(viewport());
        useDevicePixels(painter, view_.displayScale);
        for (auto const& rect : event->region())
            painter.fillRect(touchedPixels(rect, view_.displayScale), painter_->ground());
        paintCells(painter, event->region());
    }
    isComplete_ = view_.isComplete() && isEachInFinalState();
    isFilled_ = isComplete_ || isEachFilled();
    if (painted)
        painted();
}

void GridWidget::paintCells(QPainter& painter, QRegion const& dirty)
{
    auto const bounds = dirty.boundingRect().adjusted(-1, -1, 1, 1);
    auto const rows = view_.layout().visible(top_ + bounds.top(), bounds.height(), 0);
    auto const& layout = view_.layout();
    bool hasDrawnCaption = false; // each frame brings the page on, however slow it is
    QElapsedTimer clock;
    clock.start();
    for (auto index = rows.first; index < rows.last; ++index) {
        auto const area = layout.cell(index);
        auto const rect = QRectF(area.x, area.y - top_, area.width, area.height);
        if (!dirty.intersects(rect.toAlignedRect()))
            continue;
        auto const cell = view_.cell(index);
        auto* drawn = pictures_.find(cell.item.url);
        if (drawn && !painter_->captions().isDrawn(cell, *drawn)) {
            if (!hasDrawnCaption || clock.nsecsElapsed() < captionNanoseconds)
                painter_->captions().draw(cell, *drawn);
            else
                updateCell(index);
            hasDrawnCaption = true;
        }
        painter_->paint(painter, placeOf(index), cell, drawn);
        hasShownPicture_ = hasShownPicture_ || (drawn && drawn->showsOwnPicture());
    }
}

bool GridWidget::isEachFilled() const
{
    auto const inView = view_.inView();
    for (auto index = inView.first; index < inView.last; ++index) {
        auto const cell = view_.cell(index);
        auto const* drawn = pictures_.find(cell.item.url);
        if (!cell.showsFailure() && (!drawn || drawn->picture.isNull()))
            return false;
    }
    return !inView.empty();
}

bool GridWidget::isEachInFinalState() const
{
    auto const inView = view_.inView();
    for (auto index = inView.first; index < inView.last; ++index) {
        auto const cell = view_.cell(index);
        auto const* drawn = pictures_.find(cell.item.url);
        if (!drawn || drawn->isPending() || drawn->source != cell.image
            || !painter_->captions().isDrawn(cell, *drawn))
            return false;
    }
    return !inView.empty();
}

} // namespace pixelhain
