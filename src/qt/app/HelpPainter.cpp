#include "qt/app/HelpPainter.h"
#include "qt/window/Symbols.h"
#include <QFontMetricsF>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

using namespace helpMeasures;

// A symbol's drawing is somewhat larger than the letters of its size.
constexpr double symbolEdgePerSize = 1.25;
constexpr double capCorner = 5;
constexpr double tipCorner = 8;
constexpr double matchCorner = 3;
constexpr double capFillShare = 0.05; // of the primary colour
constexpr double capLineShare = 0.28;

struct Baseline {
    double y;
    QFontMetricsF metrics;
};

QFont fontAt(QTextBlock const& block, int offset)
{
    for (auto i = block.begin(); !i.atEnd(); ++i)
        if (i.fragment().contains(block.position() + offset))
            return i.fragment().charFormat().font();
    return block.charFormat().font();
}

Baseline baseline(QTextBlock const& block, QTextLine const& line, int offset)
{
    return { block.layout()->position().y() + line.y() + line.ascent(),
        QFontMetricsF(fontAt(block, offset)) };
}

QRectF textBox(QTextBlock const& block)
{
    auto const& layout = *block.layout();
    auto const box = layout.boundingRect();
    return box.translated(layout.position());
}

} // namespace

HelpPainter::HelpPainter(QTextDocument const& document, QPalette const& palette, double scale)
    : document_(document)
    , tones_(palette, Tones::Ground::gallery)
    , palette_(palette)
    , scale_(scale)
{
}

bool HelpPainter::isDark() const
{
    return tones_.ground().lightness() < 128;
}

QRectF HelpPainter::snapped(QRectF const& rectangle) const
{
    auto const snap = [this](double points) { return std::round(points * scale_) / scale_; };
    return { QPointF(snap(rectangle.left()), snap(rectangle.top())),
        QPointF(snap(rectangle.right()), snap(rectangle.bottom())) };
}

template <typename Draw>
void HelpPainter::forBlocks(QPainter& painter, QRectF const& area, Draw const& draw) const
{
    constexpr double reach = 20; // of drawings beyond the letters of their paragraph
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (auto block = document_.begin(); block.isValid(); block = block.next()) {
        auto const box = textBox(block);
        if (box.top() - reach > area.bottom())
            break;
        if (box.bottom() + reach >= area.top() && block.layout()->lineCount() > 0)
            draw(block);
    }
    painter.restore();
}

void HelpPainter::drawBelow(QPainter& painter, QRectF const& area, std::string const& symbol,
    std::vector<HelpRange> const& matches) const
{
    forBlocks(painter, area, [&](QTextBlock const& block) {
        switch (helpParagraph(block)) {
        case HelpParagraph::title:
            drawTitle(painter, block, symbol);
            break;
        case HelpParagraph::step:
            drawCircle(painter, block);
            break;
        case HelpParagraph::keys:
            drawCap(painter, block, tones_.of(Tint { ColorRole::primary, capFillShare }),
                Qt::transparent);
            break;
        case HelpParagraph::tip:
            drawTip(painter, block);
            break;
        case HelpParagraph::heading:
        case HelpParagraph::text:
        case HelpParagraph::bullet:
            break;
        }
        drawMatches(painter, block, matches);
    });
}

void HelpPainter::drawAbove(QPainter& painter, QRectF const& area) const
{
    auto const line = tones_.of(Tint { ColorRole::primary, capLineShare });
    forBlocks(painter, area, [&](QTextBlock const& block) {
        if (helpParagraph(block) == HelpParagraph::keys)
            drawCap(painter, block, Qt::transparent, line);
    });
}

std::vector<QRectF> HelpPainter::rectangles(QTextBlock const& block, int begin, int end)
{
    std::vector<QRectF> result;
    auto const& layout = *block.layout();
    for (int i = 0; i < layout.lineCount(); ++i) {
        auto const line = layout.lineAt(i);
        auto const from = std::max(begin, line.textStart());
        auto const to = std::min(end, line.textStart() + line.textLength());
        if (from >= to)
            continue;
        auto const [y, metrics] = baseline(block, line, from);
        auto const left = layout.position().x() + line.cursorToX(from);
        auto const right = layout.position().x() + line.cursorToX(to);
        result.emplace_back(
            QPointF(left, y - metrics.ascent()), QPointF(right, y + metrics.descent()));
    }
    return result;
}

void HelpPainter::drawSymbol(QPainter& painter, std::string_view name, QRectF const& frame,
    double edge, QColor const& color) const
{
    auto const pixels = static_cast<int>(std::lround(edge * scale_));
    auto image = symbolImage(name, pixels, color);
    image.setDevicePixelRatio(scale_);
    auto const size = pixels / scale_;
    auto const place = frame.center() - QPointF(size / 2, size / 2);
    painter.drawImage(snapped(QRectF(place, QSizeF(size, size))).topLeft(), image);
}

void HelpPainter::drawTitle(
    QPainter& painter, QTextBlock const& block, std::string const& symbol) const
{
    auto const [y, metrics] = baseline(block, block.layout()->lineAt(0), 0);
    auto const middle = y - metrics.capHeight() / 2;
    QRectF const frame(document_.documentMargin(), middle - titleSymbolFrame / 2, titleSymbolFrame,
        titleSymbolFrame);
    drawSymbol(
        painter, symbol, frame, titleSymbol * symbolEdgePerSize, tones_.of(ColorRole::accent));
}

void HelpPainter::drawCircle(QPainter& painter, QTextBlock const& block) const
{
    auto const digits = rectangles(block, 0, leaderLength(block));
    if (digits.empty())
        return;
    auto const [y, metrics] = baseline(block, block.layout()->lineAt(0), 0);
    auto const middle = QPointF(digits.front().center().x(), y - metrics.capHeight() / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tones_.of(ColorRole::accent));
    painter.drawEllipse(
        snapped(QRectF(middle - QPointF(circle / 2, circle / 2), QSizeF(circle, circle))));
}

void HelpPainter::drawCap(
    QPainter& painter, QTextBlock const& block, QColor const& fill, QColor const& line) const
{
    for (auto const& letters : rectangles(block, 0, leaderLength(block)))
        drawBox(painter, letters.adjusted(-capPaddingX, -capPaddingY, capPaddingX, capPaddingY),
            capCorner, fill, line);
}

void HelpPainter::drawTip(QPainter& painter, QTextBlock const& block) const
{
    constexpr float fillOpacity = 0.13F;
    constexpr float lineOpacity = 0.45F;
    QColor const yellow = isDark() ? QColor(0xFF, 0xD6, 0x0A) : QColor(0xF2, 0xB1, 0x00);
    auto fill = yellow;
    fill.setAlphaF(fillOpacity);
    auto line = yellow;
    line.setAlphaF(lineOpacity);
    auto const text = textBox(block);
    auto const width = document_.textWidth() - 2 * document_.documentMargin();
    QRectF const box(
        document_.documentMargin(), text.top() - tipPadding, width, text.height() + 2 * tipPadding);
    drawBox(painter, box, tipCorner, fill, line);
    auto const [y, metrics] = baseline(block, block.layout()->lineAt(0), 0);
    QRectF const frame(document_.documentMargin() + tipPadding,
        y - metrics.capHeight() / 2 - tipSymbol / 2, tipSymbol, tipSymbol);
    drawSymbol(painter, HelpTip::symbol, frame, tipSymbol, yellow);
}

void HelpPainter::drawMatches(
    QPainter& painter, QTextBlock const& block, std::vector<HelpRange> const& matches) const
{
    QColor const tint = isDark() ? QColor(0xFF, 0xD6, 0x0A, 0x66) : QColor(0xFF, 0xD6, 0x0A, 0x99);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    auto const start = block.position();
    for (auto const& [begin, end] : matches)
        for (auto const& box : rectangles(block, begin - start, end - start))
            painter.drawRoundedRect(snapped(box), matchCorner, matchCorner);
}

void HelpPainter::drawBox(QPainter& painter, QRectF const& box, double corner, QColor const& fill,
    QColor const& line) const
{
    auto const width = std::max(1.0, std::floor(scale_)) / scale_;
    auto const half = width / 2;
    painter.setBrush(fill);
    painter.setPen(QPen(line, width));
    painter.drawRoundedRect(snapped(box).adjusted(half, half, -half, -half), corner, corner);
}

} // namespace pixelhain
