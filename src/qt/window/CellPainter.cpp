#include "qt/window/CellPainter.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/DrawnPicture.h"
#include "qt/window/Symbols.h"
#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

QFont enlarged(QFont font, double scale)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * scale)));
    return font;
}

double lineHeight(QFont const& font)
{
    return std::ceil(QFontMetricsF(font).height());
}

} // namespace

CellPainter::CellPainter(QPalette const& palette, QFont const& font, double scale)
    : tones_(palette, Tones::Ground::gallery)
    , scale_(scale)
    , nameFont_(scaledFont(font, captionScale))
    , resolutionFont_(scaledFont(font, smallCaptionScale))
{
}

GridView::LineHeights CellPainter::lineHeights() const
{
    return { lineHeight(nameFont_), lineHeight(resolutionFont_) };
}

int CellPainter::pixels(double points) const
{
    return static_cast<int>(std::lround(points * scale_));
}

int CellPainter::pictureEdge(double thumbSize) const
{
    return std::max(0, pixels(thumbSize) - 2 * pixels(ThumbnailCell::imageInset));
}

CellPainter::LineStyle CellPainter::nameStyle(ThumbnailCell const& cell) const
{
    return { nameFont_, shownText(cell.nameText()), tones_.of(cell.nameTint()) };
}

CellPainter::LineStyle CellPainter::resolutionStyle(ThumbnailCell const& cell) const
{
    return { resolutionFont_, shownText(cell.resolutionText()),
        tones_.of(ThumbnailCell::resolutionTint) };
}

void CellPainter::drawLines(ThumbnailCell const& cell, DrawnCell& drawn) const
{
    if (auto const style = nameStyle(cell); cell.showName && !isLine(drawn.name, style))
        drawn.name = drawnLine(style, cell.size);
    if (auto const style = resolutionStyle(cell);
        cell.showResolution && !isLine(drawn.resolution, style))
        drawn.resolution = drawnLine(style, cell.size);
}

bool CellPainter::hasLines(ThumbnailCell const& cell, DrawnCell const& drawn) const
{
    return (!cell.showName || isLine(drawn.name, nameStyle(cell)))
        && (!cell.showResolution || isLine(drawn.resolution, resolutionStyle(cell)));
}

bool CellPainter::isLine(DrawnLine const& line, LineStyle const& style)
{
    return !line.image.isNull() && line.color == style.color.rgba() && line.text == style.text;
}

// The picture of the line is opaque, so that painting it is copying it.
DrawnLine CellPainter::drawnLine(LineStyle const& style, double width) const
{
    auto const& [font, text, color] = style;
    auto const size = QSize(pixels(width), pixels(lineHeight(font)));
    DrawnLine line { text, color.rgba(), QImage(size, QImage::Format_RGB32) };
    line.image.fill(tones_.ground());
    if (text == QLatin1StringView(" "))
        return line;
    QPainter painter(&line.image);
    painter.setFont(enlarged(font, scale_));
    painter.setPen(color);
    auto const metrics = QFontMetricsF(painter.font());
    auto const spare = (size.height() - metrics.height()) / 2;
    auto const baseline = static_cast<int>(std::lround(spare + metrics.ascent()));
    if (&font == &resolutionFont_) {
        drawDigitsEvenly(painter, text, size.width(), baseline);
        return line;
    }
    auto flat = text;
    std::replace_if(
        flat.begin(), flat.end(), [](QChar letter) { return letter < u' '; }, QChar(u' '));
    auto const shown = metrics.elidedText(flat, Qt::ElideMiddle, size.width());
    auto const left = std::lround((size.width() - metrics.horizontalAdvance(shown)) / 2);
    painter.drawText(QPointF(static_cast<double>(left), baseline), shown);
    return line;
}

// Every digit takes the room of the widest one, whatever the font does by itself.
void CellPainter::drawDigitsEvenly(
    QPainter& painter, QString const& text, int width, int baseline) const
{
    auto const metrics = QFontMetricsF(painter.font());
    double digit = 0;
    for (char16_t one = u'0'; one <= u'9'; ++one)
        digit = std::max(digit, metrics.horizontalAdvance(QChar(one)));
    auto const advance = [&](QChar letter) {
        return letter.isDigit() ? digit : metrics.horizontalAdvance(letter);
    };
    double total = 0;
    for (auto const letter : text)
        total += advance(letter);
    auto x = std::round((width - total) / 2);
    for (auto const letter : text) {
        auto const room = advance(letter);
        painter.drawText(
            QPointF(x + (room - metrics.horizontalAdvance(letter)) / 2, baseline), letter);
        x += room;
    }
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
        painter.drawImage(place.nameLine, drawn->name.image);
    if (drawn && cell.showResolution)
        painter.drawImage(place.resolutionLine, drawn->resolution.image);
}

// The ground with the cell's rounded rectangle and frame: the picture lies inside the frame.
QImage const& CellPainter::back(ThumbnailCell const& cell)
{
    auto const fill = tones_.of(cell.background());
    auto const frame = cell.frame();
    auto const line = tones_.of(frame.tint);
    auto const edge = pixels(cell.size);
    auto const lineWidth = std::max(1, pixels(frame.width));
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
    auto font = nameFont_;
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
