#include "qt/window/ToolbarButton.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Menus.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pixelhain {

namespace {

constexpr int symbolEdge = 18;
constexpr int paddingX = 7;
constexpr int paddingY = 7;
constexpr int labelSpacing = 6;
constexpr int arrowSpacing = 4;
constexpr int arrowWidth = 7;
constexpr double corner = 6;
constexpr double hoverShare = 0.08; // of the primary colour
constexpr double pressedShare = 0.16;
constexpr double ringWidth = 2;

} // namespace

ToolbarButton::ToolbarButton(std::string_view symbol, std::string_view title, QWidget* parent)
    : QToolButton(parent)
    , symbol_(symbol)
{
    setText(shownText(title));
    setAccessibleName(shownText(title));
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    static_cast<void>(drawnSymbol()); // drawn while the fonts are still on their way
    for (auto const key : { Qt::Key_Return, Qt::Key_Enter }) {
        auto* const shortcut = new QShortcut(QKeySequence(key), this);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (menu())
                showMenu();
            else
                click();
        });
    }
}

void ToolbarButton::setEntries(std::function<std::vector<MenuEntry>()> entries)
{
    auto* const menu = new QMenu(this);
    menu->setAccessibleName(text());
    connect(menu, &QMenu::aboutToShow, this, [this, menu, entries = std::move(entries)] {
        if (used)
            used();
        menu->clear();
        qDeleteAll(menu->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)); // which clear() keeps
        fillMenu(*menu, entries());
    });
    connect(menu, &QMenu::aboutToHide, this, [this] { update(); });
    setMenu(menu);
    setPopupMode(InstantPopup);
}

void ToolbarButton::setShowsLabel(bool shows)
{
    if (std::exchange(showsLabel_, shows) != shows)
        update();
}

QImage ToolbarButton::drawnSymbol() const
{
    auto const scale = devicePixelRatioF();
    auto image = symbolImage(symbol_, static_cast<int>(std::lround(symbolEdge * scale)),
        Tones(palette()).of(ColorRole::primary));
    image.setDevicePixelRatio(scale);
    return image;
}

int ToolbarButton::wantedWidth(bool withLabel) const
{
    int const label = withLabel ? labelSpacing + fontMetrics().horizontalAdvance(text()) : 0;
    int const arrow = menu() ? arrowSpacing + arrowWidth : 0;
    return 2 * paddingX + symbolEdge + label + arrow;
}

QSize ToolbarButton::sizeHint() const
{
    return { wantedWidth(showsLabel_),
        std::max(symbolEdge, fontMetrics().height()) + 2 * paddingY };
}

void ToolbarButton::paintGround(QPainter& painter) const
{
    Tones const tones(palette());
    auto const isPressed = isDown() || (menu() && menu()->isVisible());
    if (isPressed || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            tones.of(Tint { ColorRole::primary, isPressed ? pressedShare : hoverShare }));
        painter.drawRoundedRect(rect(), corner, corner);
    }
    if (!hasFocus())
        return;
    constexpr auto inset = ringWidth / 2;
    painter.setPen(QPen(tones.of(ColorRole::accent), ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), corner, corner);
}

void ToolbarButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
    Tones const tones(palette());
    auto const color = tones.of(ColorRole::primary);
    auto const scale = devicePixelRatioF();
    auto const snapped = [&](double points) { return std::round(points * scale) / scale; };
    auto const drawing = drawnSymbol();
    auto const edge = drawing.height() / scale;
    painter.drawImage(QPointF(paddingX, snapped((height() - edge) / 2)), drawing);
    painter.setPen(color);
    if (showsLabel_)
        painter.drawText(rect().adjusted(paddingX + symbolEdge + labelSpacing, 0, 0, 0),
            Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text());
    if (!menu())
        return;
    auto const left = width() - paddingX - arrowWidth;
    auto const middle = snapped(height() / 2.0 + 0.5);
    constexpr double half = arrowWidth / 2.0;
    QPen pen(tones.of(ColorRole::secondary), 1.4);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    painter.setPen(pen);
    painter.drawPolyline(QPolygonF { { left + 0.5, middle - half / 2 },
        { left + half, middle + half / 2 }, { left + arrowWidth - 0.5, middle - half / 2 } });
}

} // namespace pixelhain
