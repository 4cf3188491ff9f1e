#include "qt/window/CellPainter.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/DrawnPicture.h"
#include "qt/window/Symbols.h"
#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace pixelhain {

CellPainter::CellPainter(QPalette const& palette, QFont const& font, double scale)
    : tones_(palette, Tones::Ground::gallery)
    , scale_(scale)
    , captions_(tones_, font, scale)
    , font_(font)
{
}

// A line that waits to be drawn anew may be of cells of another width: its middle is shown, and
// nothing beside the cell, which nobody would clear.
void CellPainter::paintLine(QPainter& painter, QPoint at, QImage const& line, int width)
{
    auto const spare = width - line.width();
    if (spare >= 0)
        painter.drawImage(at + QPoint(spare / 2, 0), line);
    else
        painter.drawImage(at, line, QRect(-spare / 2, 0, width, line.height()));
}

int CellPainter::pixels(double points) const
{
    return static_cast<int>(std::lround(points * scale_));
}

int CellPainter::pictureEdge(double thumbSize) const
{
    return std::max(0, pixels(thumbSize) - 2 * pixels(ThumbnailCell::imageInset));
}

void CellPainter::paint(
    QPainter& painter, Place const& place, ThumbnailCell const& cell, DrawnCell const* drawn)
{
    painter.drawImage(place.area, back(cell));
    paintPicture(painter, place.area, cell, drawn);
    if (cell.showsBadge())
        paintBadge(painter, place.area, cell);
    if (cell.showsCircle())
        paintCircle(painter, place.area, cell);
    if (drawn && cell.showName)
        paintLine(painter, place.nameLine, drawn->name.image, pixels(cell.size));
    if (drawn && cell.showResolution)
        paintLine(painter, place.resolutionLine, drawn->resolution.image, pixels(cell.size));
}

// The ground with the cell's rounded rectangle and frame: the picture lies inside the frame.
QImage const& CellPainter::back(ThumbnailCell const& cell)
{
    auto const fill = tones_.of(cell.background());
    auto const frame = cell.frame();
    auto const line = tones_.of(frame.tint);
    auto const edge = pixels(cell.size);
    auto const lineWidth = std::max(1, pixels(frame.width));
    // While the size of the cells changes, each size is needed for a moment only.
    constexpr std::size_t mostKept = 16;
    if (backs_.size() >= mostKept)
        backs_.clear();
    auto& image = backs_[{ edge, fill.rgba(), line.rgba(), lineWidth }];
    if (!image.isNull())
        return image;
    image = QImage(edge, edge, QImage::Format_RGB32);
    image.fill(tones_.ground());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    auto const radius = ThumbnailCell::cornerRadius * scale_;
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(0, 0, edge, edge), radius, radius);
    if (frame.tint.role == ColorRole::clear)
        return image;
    auto const half = lineWidth / 2.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(line, lineWidth));
    painter.drawRoundedRect(
        QRectF(half, half, edge - lineWidth, edge - lineWidth), radius - half, radius - half);
    return image;
}

void CellPainter::paintPicture(
    QPainter& painter, QPoint area, ThumbnailCell const& cell, DrawnCell const* drawn) const
{
    auto const edge = pixels(cell.size);
    auto const centred = [&](QSize size) {
        return area + QPoint((edge - size.width()) / 2, (edge - size.height()) / 2);
    };
    if (drawn && !drawn->picture.isNull()) {
        auto const& picture = drawn->picture;
        auto const wanted
            = drawnSize({ picture.width(), picture.height() }, pictureEdge(cell.size));
        auto const size = QSize(wanted.width, wanted.height);
        if (std::max(picture.width(), picture.height()) == std::max(size.width(), size.height())) {
            painter.drawImage(centred(picture.size()), picture);
            return;
        }
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRect(centred(size), size), picture);
    } else if (cell.showsFailure()) {
        constexpr double symbolEdge = 24;
        auto const symbol = symbolImage(
            ThumbnailCell::failedSymbol, pixels(symbolEdge), tones_.of(ThumbnailCell::failedTint));
        painter.drawImage(centred(symbol.size()), symbol);
    }
}

void CellPainter::paintBadge(QPainter& painter, QPoint area, ThumbnailCell const& cell)
{
    auto const label = shownText(cell.badgeLabel());
    auto& badge = badges_[label];
    if (badge.isNull())
        badge = drawnBadge(label);
    auto const corner = pixels(cell.size) - pixels(ThumbnailCell::cornerInset);
    painter.drawImage(area + QPoint(corner - badge.width(), corner - badge.height()), badge);
}

QImage CellPainter::drawnBadge(QString const& label) const
{
    auto font = font_;
    font.setPixelSize(std::max(1, pixels(ThumbnailCell::badgeFontSize)));
    font.setBold(true);
    auto const metrics = QFontMetricsF(font);
    auto const padding = pixels(ThumbnailCell::badgePaddingX);
    auto const width = static_cast<int>(std::ceil(metrics.horizontalAdvance(label))) + 2 * padding;
    auto const height
        = static_cast<int>(std::ceil(metrics.height())) + 2 * pixels(ThumbnailCell::badgePaddingY);
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tones_.of(ThumbnailCell::badgeFill));
    auto const radius = ThumbnailCell::badgeCornerRadius * scale_;
    painter.drawRoundedRect(image.rect(), radius, radius);
    painter.setPen(tones_.of(ThumbnailCell::badgeText));
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter | Qt::TextSingleLine, label);
    return image;
}

void CellPainter::paintCircle(QPainter& painter, QPoint area, ThumbnailCell const& cell)
{
    auto const place = cell.circleRect();
    auto const outline = ThumbnailCell::circleOutline;
    auto const line = std::max(1.0, outline.width * scale_);
    auto const edge = pixels(place.width);
    auto const corner = area + QPoint(pixels(place.x), pixels(place.y));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(tones_.of(outline.tint), line));
    painter.setBrush(tones_.of(cell.circleFill()));
    auto const half = line / 2;
    painter.drawEllipse(QRectF(corner, QSizeF(edge, edge)).adjusted(half, half, -half, -half));
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (!cell.isSelected)
        return;
    auto const mark = symbolImage(
        ThumbnailCell::circleSymbol, pixels(ThumbnailCell::circleSymbolSize + 2), Qt::white);
    auto const inset = (edge - mark.width()) / 2;
    painter.drawImage(corner + QPoint(inset, inset), mark);
}

} // namespace pixelhain
