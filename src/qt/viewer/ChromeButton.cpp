#include "qt/viewer/ChromeButton.h"
#include "qt/ports/FileUrlText.h"
#include "qt/viewer/DarkLook.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include <QPainter>
#include <cmath>

namespace pixelhain {

namespace {

constexpr int symbolEdge = 18;
constexpr int reach = 5; // around the symbol, for the pointer
constexpr double corner = 6;
constexpr double hoverShare = 0.14;
constexpr double pressedShare = 0.26;

void paintSymbol(QPainter& painter, QWidget const& widget, std::string_view name, double edge,
    QColor color, double opacity)
{
    auto const scale = widget.devicePixelRatioF();
    auto const pixels = static_cast<int>(std::lround(edge * scale));
    color.setAlphaF(1);
    auto symbol = symbolImage(name, pixels, color);
    symbol.setDevicePixelRatio(scale);
    auto const snapped = [&](double points) { return std::round(points * scale) / scale; };
    painter.setOpacity(opacity);
    painter.drawImage(QPointF(snapped((widget.width() - pixels / scale) / 2),
                          snapped((widget.height() - pixels / scale) / 2)),
        symbol);
    painter.setOpacity(1);
}

void paintRing(QPainter& painter, QWidget const& widget, double radius)
{
    if (!widget.hasFocus())
        return;
    painter.setPen(QPen(Tones(widget.palette()).of(ColorRole::accent), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(1, 1, -1, -1), radius, radius);
}

} // namespace

ChromeButton::ChromeButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
}

void ChromeButton::show(ViewerChrome::Button const& look)
{
    if (look == look_)
        return;
    look_ = look;
    setToolTip(shownText(look.tip));
    setAccessibleName(shownText(look.name));
    update();
}

QSize ChromeButton::sizeHint() const
{
    return { symbolEdge + 2 * reach, symbolEdge + 2 * reach };
}

bool ChromeButton::event(QEvent* event)
{
    return showViewerTip(*this, *event) || QAbstractButton::event(event);
}

void ChromeButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    Tones const tones(palette());
    if (underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            tones.of(Tint { ColorRole::primary, isDown() ? pressedShare : hoverShare }));
        painter.drawRoundedRect(rect(), corner, corner);
    }
    paintSymbol(
        painter, *this, look_.symbol, symbolEdge, tones.of(look_.tint.role), look_.tint.opacity);
    paintRing(painter, *this, corner);
}

void ChromeButton::enterEvent(QEnterEvent*)
{
    update();
}

void ChromeButton::leaveEvent(QEvent*)
{
    update();
}

SideArrow::SideArrow(ViewerChrome::Side side, QWidget* parent)
    : QAbstractButton(parent)
    , side_(side)
{
    setFocusPolicy(Qt::TabFocus);
}

void SideArrow::show(ViewerChrome::Arrow const& look)
{
    if (look == look_)
        return;
    look_ = look;
    setAccessibleName(shownText(look.name));
    update();
}

QSize SideArrow::sizeHint() const
{
    return { static_cast<int>(ViewerChrome::arrowWidth),
        static_cast<int>(ViewerChrome::arrowHeight) };
}

void SideArrow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    Tones const tones(palette());
    painter.setPen(Qt::NoPen);
    painter.setBrush(tones.of(look_.fill));
    painter.drawRoundedRect(
        rect(), ViewerChrome::arrowCornerRadius, ViewerChrome::arrowCornerRadius);
    paintSymbol(painter, *this, look_.symbol, ViewerChrome::arrowSymbolSize,
        tones.of(look_.tint.role), look_.tint.opacity);
    paintRing(painter, *this, ViewerChrome::arrowCornerRadius);
}

void SideArrow::enterEvent(QEnterEvent*)
{
    if (hovered)
        hovered(true);
}

void SideArrow::leaveEvent(QEvent*)
{
    if (hovered)
        hovered(false);
}

} // namespace pixelhain
