#include "qt/sidebar/SymbolButton.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr int symbolSize = 16;
constexpr int spacing = 6;
constexpr double corner = 5;
constexpr double hoverShare = 0.08; // of the primary colour
constexpr double pressedShare = 0.16;

} // namespace

SymbolButton::SymbolButton(std::string_view symbol, QString const& text, QWidget* parent)
    : QToolButton(parent)
    , symbol_(symbol)
{
    setText(text);
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
}

void SymbolButton::setPadding(int x, int y)
{
    paddingX_ = x;
    paddingY_ = y;
    updateGeometry();
}

QSize SymbolButton::sizeHint() const
{
    auto const metrics = fontMetrics();
    int const textWidth = text().isEmpty() ? 0 : spacing + metrics.horizontalAdvance(text());
    int const height = text().isEmpty() ? symbolSize : std::max(symbolSize, metrics.height());
    return { symbolSize + textWidth + 2 * paddingX_, height + 2 * paddingY_ };
}

QSize SymbolButton::minimumSizeHint() const
{
    return { symbolSize + 2 * paddingX_, sizeHint().height() };
}

void SymbolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    Tones const tones(palette());
    if (isEnabled() && (underMouse() || hasFocus())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            tones.of(Tint { ColorRole::primary, isDown() ? pressedShare : hoverShare }));
        painter.drawRoundedRect(
            rect(), text().isEmpty() ? corner : 0, text().isEmpty() ? corner : 0);
    }
    // What is disabled is so in the palette already.
    auto const color
        = tones.of(isEnabled() && text().isEmpty() ? ColorRole::secondary : ColorRole::primary);
    auto const scale = devicePixelRatioF();
    auto const edge = static_cast<int>(std::lround(symbolSize * scale));
    auto symbol = symbolImage(symbol_, edge, color);
    symbol.setDevicePixelRatio(scale);
    auto const snapped = [&](double points) { return std::round(points * scale) / scale; };
    painter.drawImage(QPointF(paddingX_, snapped((height() - edge / scale) / 2)), symbol);
    if (text().isEmpty())
        return;
    auto const place = rect().adjusted(paddingX_ + symbolSize + spacing, 0, -paddingX_, 0);
    painter.setPen(color);
    painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
}

} // namespace pixelhain
