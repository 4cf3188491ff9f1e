#include "qt/window/CaptionPainter.h"
#include "qt/ports/FileUrlText.h"
#include <QFontMetricsF>
#include <QPainter>
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

std::optional<PixelSize> sizeOf(ThumbnailCell const& cell)
{
    return cell.meta ? cell.meta->size : std::nullopt;
}

// The baseline at which the font's line stands in the middle of the image's height.
double baseline(QPainter const& painter)
{
    auto const metrics = QFontMetricsF(painter.font());
    auto const spare = (painter.device()->height() - metrics.height()) / 2;
    return std::round(spare + metrics.ascent());
}

} // namespace

CaptionPainter::CaptionPainter(Tones const& tones, QFont const& font, double scale)
    : tones_(tones)
    , markedName_(tones.link())
    , scale_(scale)
    , nameFont_(scaledFont(font, captionScale))
    , resolutionFont_(scaledFont(font, smallCaptionScale))
{
}

GridView::LineHeights CaptionPainter::lineHeights() const
{
    return { lineHeight(nameFont_), lineHeight(resolutionFont_) };
}

int CaptionPainter::width(ThumbnailCell const& cell) const
{
    return static_cast<int>(std::lround(cell.size * scale_));
}

void CaptionPainter::draw(ThumbnailCell const& cell, DrawnCell& drawn)
{
    if (!isNameDrawn(cell, drawn.name))
        drawn.name = { drawnName(cell), nameColor(cell).rgba(), std::nullopt };
    if (!isResolutionDrawn(cell, drawn.resolution))
        drawn.resolution = { drawnResolution(cell), 0, sizeOf(cell) };
}

bool CaptionPainter::isDrawn(ThumbnailCell const& cell, DrawnCell const& drawn) const
{
    return isNameDrawn(cell, drawn.name) && isResolutionDrawn(cell, drawn.resolution);
}

bool CaptionPainter::isNameDrawn(ThumbnailCell const& cell, DrawnLine const& line) const
{
    return !cell.showName
        || (line.image.width() == width(cell) && line.color == nameColor(cell).rgba());
}

bool CaptionPainter::isResolutionDrawn(ThumbnailCell const& cell, DrawnLine const& line) const
{
    return !cell.showResolution || (line.image.width() == width(cell) && line.size == sizeOf(cell));
}

// Asked for every cell of every frame.
QColor CaptionPainter::nameColor(ThumbnailCell const& cell) const
{
    auto const tint = cell.nameTint();
    return tint.role == ColorRole::accent ? markedName_ : tones_.of(tint);
}

QImage CaptionPainter::emptyLine(int width, QFont const& font) const
{
    auto const height = static_cast<int>(std::lround(lineHeight(font) * scale_));
    QImage line(width, height, QImage::Format_RGB32);
    line.fill(tones_.ground());
    return line;
}

QImage CaptionPainter::drawnName(ThumbnailCell const& cell) const
{
    auto line = emptyLine(width(cell), nameFont_);
    QPainter painter(&line);
    painter.setFont(enlarged(nameFont_, scale_));
    painter.setPen(nameColor(cell));
    auto name = shownText(cell.nameText());
    std::replace_if(
        name.begin(), name.end(), [](QChar letter) { return letter < u' '; }, QChar(u' '));
    auto const metrics = QFontMetricsF(painter.font());
    auto room = metrics.horizontalAdvance(name);
    if (room > line.width()) {
        name = metrics.elidedText(name, Qt::ElideMiddle, line.width());
        room = metrics.horizontalAdvance(name);
    }
    painter.drawText(QPointF(std::round((line.width() - room) / 2), baseline(painter)), name);
    return line;
}

QImage CaptionPainter::drawnResolution(ThumbnailCell const& cell)
{
    constexpr std::size_t mostKept = 256;
    auto const text = shownText(cell.resolutionText());
    if (resolutions_.size() >= mostKept)
        resolutions_.clear();
    auto& line = resolutions_[{ text, width(cell) }];
    if (!line.isNull())
        return line;
    line = emptyLine(width(cell), resolutionFont_);
    QPainter painter(&line);
    painter.setFont(enlarged(resolutionFont_, scale_));
    painter.setPen(tones_.of(ThumbnailCell::resolutionTint));
    drawDigitsEvenly(painter, text);
    return line;
}

// Every digit takes the room of the widest one, whatever the font does by itself.
void CaptionPainter::drawDigitsEvenly(QPainter& painter, QString const& text) const
{
    auto const metrics = QFontMetricsF(painter.font());
    double digit = 0;
    for (char16_t one = u'0'; one <= u'9'; ++one)
        digit = std::max(digit, metrics.horizontalAdvance(QChar(one)));
    auto const room = [&](QChar letter) {
        return letter.isDigit() ? digit : metrics.horizontalAdvance(letter);
    };
    double total = 0;
    for (auto const letter : text)
        total += room(letter);
    auto x = std::round((painter.device()->width() - total) / 2);
    auto const y = baseline(painter);
    for (auto const letter : text) {
        auto const spare = room(letter) - metrics.horizontalAdvance(letter);
        painter.drawText(QPointF(x + spare / 2, y), letter);
        x += room(letter);
    }
}

} // namespace pixelhain
