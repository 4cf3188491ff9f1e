#include "qt/sidebar/FolderRowPainter.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Symbols.h"
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr double inset = 6; // of the selection from the column's edges
constexpr double corner = 5;
constexpr double padding = 6; // of the content from the selection's edges
constexpr double triangleWidth = 16;
constexpr double symbolSize = 16;
constexpr float onAccentOpacity = 0.18F; // of a count's ground on the selection
constexpr double selectedShare = 0.14; // of the primary colour, without the focus

double left(QRectF const& row, int level)
{
    return row.left() + inset + FolderRow::indent(level, row.width());
}

} // namespace

FolderRowPainter::FolderRowPainter(QFont const& font, QPalette const& palette, double scale)
    : font_(font)
    , rootFont_(font)
    , countFont_(scaledFont(font, captionScale))
    , tones_(palette)
    , scale_(scale)
{
    rootFont_.setWeight(QFont::DemiBold);
}

int FolderRowPainter::height(QFont const& font)
{
    constexpr int least = 24;
    return std::max(least, QFontMetrics(font).height() + 8);
}

QRect FolderRowPainter::triangle(QRect const& row, int level)
{
    return QRectF(left(row, level), row.top(), triangleWidth, row.height()).toRect();
}

double FolderRowPainter::snapped(double points) const
{
    return std::round(points * scale_) / scale_;
}

void FolderRowPainter::draw(
    QPainter& painter, FolderRow const& row, FolderRowLook const& look) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawGround(painter, look);
    bool const onAccent = look.isSelected && look.hasFocus;
    auto const strong = tones_.selectedText();
    auto const text = onAccent ? strong : tones_.of(ColorRole::primary);
    QRectF const area(look.rect);
    if (look.isBranch)
        drawTriangle(painter, look, onAccent ? strong : tones_.of(ColorRole::secondary));

    auto const x = snapped(left(area, look.level) + triangleWidth);
    auto const edge = static_cast<int>(std::lround(symbolSize * scale_));
    auto symbol = symbolImage(row.symbol(), edge, onAccent ? strong : tones_.link());
    symbol.setDevicePixelRatio(scale_);
    painter.drawImage(QPointF(x, snapped(area.center().y() - edge / scale_ / 2)), symbol);

    auto const end = drawCount(painter, shownText(row.countText()), look);
    auto const nameLeft = x + symbolSize + FolderRow::spacing;
    QRectF const place(nameLeft, area.top(), std::max(0.0, end - nameLeft), area.height());
    auto const& font = row.isRoot ? rootFont_ : font_;
    painter.setFont(font);
    painter.setPen(text);
    auto const name = QFontMetricsF(font).elidedText(
        shownText(row.name).replace(QLatin1Char('\n'), QLatin1Char(' ')), Qt::ElideMiddle,
        place.width());
    painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, name);
    painter.restore();
}

void FolderRowPainter::drawGround(QPainter& painter, FolderRowLook const& look) const
{
    auto const area = QRectF(look.rect).adjusted(inset, 0, -inset, -1);
    painter.setPen(Qt::NoPen);
    bool const onAccent = look.isSelected && look.hasFocus;
    if (look.isSelected) {
        auto color = tones_.of(Tint { ColorRole::primary, selectedShare });
        painter.setBrush(onAccent ? tones_.selection() : color);
        painter.drawRoundedRect(area, corner, corner);
    }
    bool const isMarked = look.isMarked && look.hasFocus && !look.isSelected;
    if (!isMarked && !look.hasMenu)
        return;
    auto const pen = (look.hasMenu ? 2 : 1) / scale_ * std::max(1.0, std::floor(scale_));
    auto const half = pen / 2 + (onAccent ? pen : 0);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(onAccent ? tones_.selectedText() : tones_.link(), pen));
    painter.drawRoundedRect(area.adjusted(half, half, -half, -half), corner, corner);
}

void FolderRowPainter::drawTriangle(
    QPainter& painter, FolderRowLook const& look, QColor const& color) const
{
    constexpr double size = 3; // half the length of a side
    auto const row = QRectF(look.rect);
    QPointF const middle(
        snapped(left(row, look.level) + triangleWidth / 2), snapped(row.center().y()));
    painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    auto const at = [&](double x, double y) { return middle + QPointF(x, y); };
    if (look.isOpen)
        painter.drawPolyline(
            QPolygonF { at(-size, -size / 2), at(0, size / 2), at(size, -size / 2) });
    else
        painter.drawPolyline(
            QPolygonF { at(-size / 2, -size), at(size / 2, 0), at(-size / 2, size) });
}

// Returns where the name has to end.
double FolderRowPainter::drawCount(
    QPainter& painter, QString const& text, FolderRowLook const& look) const
{
    QRectF const row(look.rect);
    auto const right = row.right() - inset - padding;
    if (text.isEmpty())
        return right;
    QFontMetricsF const metrics(countFont_);
    auto const height = std::ceil(metrics.height()) + 2 * FolderRow::countPaddingY;
    auto const width = std::max(
        height, std::ceil(metrics.horizontalAdvance(text)) + 2 * FolderRow::countPaddingX);
    QRectF const pill(
        snapped(right - width), snapped(row.center().y() - height / 2), width, height);
    bool const onAccent = look.isSelected && look.hasFocus;
    auto const strong = tones_.selectedText();
    auto fill = tones_.of(Tint { ColorRole::primary, FolderRow::countFillOpacity });
    if (onAccent) {
        fill = strong.lightness() > 127 ? Qt::black : Qt::white; // away from the letters
        fill.setAlphaF(onAccentOpacity);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(pill, FolderRow::countCornerRadius, FolderRow::countCornerRadius);
    painter.setFont(countFont_);
    auto const role = look.isSelected ? ColorRole::primary : ColorRole::secondary;
    painter.setPen(onAccent ? strong : tones_.of(role));
    painter.drawText(pill, Qt::AlignCenter, text);
    return pill.left() - FolderRow::spacing;
}

} // namespace pixelhain
