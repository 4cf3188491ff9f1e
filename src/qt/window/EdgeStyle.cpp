#include "qt/window/EdgeStyle.h"
#include "qt/window/Menus.h"
#include "qt/window/SymbolIcon.h"
#include "qt/window/Tones.h"
#include "window/MainToolbar.h"
#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <utility>

namespace pixelhain {

namespace {

QString const toolkitsOwn = QStringLiteral("fusion");
constexpr double corner = 2; // as the style below has it
constexpr int dividerInset = 5; // likewise

bool isOnDark(QStyleOption const& option)
{
    return option.palette.color(QPalette::Window).lightness() < 128;
}

void drawEdge(QPainter& painter, QStyleOption const& option, QRectF const& place, double radius)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Tones(option.palette).edge(), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

bool hasFocus(QStyleOption const& option)
{
    return option.state.testFlag(QStyle::State_HasFocus);
}

bool isHeading(QStyleOption const& option, QWidget const* widget)
{
    auto const* const menu = qobject_cast<QMenu const*>(widget);
    auto const* const entry = menu ? menu->actionAt(option.rect.center()) : nullptr;
    return entry && isMenuHeading(*entry);
}

// Letters on the accent can be read, and a heading is no entry that cannot be used now.
QPalette entryColors(QStyleOptionMenuItem const& entry, QWidget const* widget)
{
    auto colors = entry.palette;
    auto const group = colors.currentColorGroup();
    colors.setColor(group, QPalette::Highlight, Tones(colors).selection());
    if (!isHeading(entry, widget))
        return colors;
    colors.setCurrentColorGroup(QPalette::Active);
    auto const text = Tones(colors, Tones::Ground::gallery).of(ColorRole::secondary);
    colors.setCurrentColorGroup(group);
    colors.setColor(group, QPalette::Text, text);
    return colors;
}

void drawDivider(QPainter& painter, QStyleOption const& option)
{
    auto const& rect = option.rect;
    painter.fillRect(rect.left() + dividerInset, rect.center().y(), rect.width() - 2 * dividerInset,
        1, Tones(option.palette, Tones::Ground::gallery).divider());
}

// On fine screens the style below draws the pieces under each title half a point too high, and each
// of them ends too soon.
void drawLineUnderBar(QPainter& painter, QStyleOption const& option)
{
    auto const& rect = option.rect;
    painter.fillRect(
        rect.left(), rect.bottom() - 1, rect.width(), 1, option.palette.color(QPalette::Window));
    painter.fillRect(
        rect.left(), rect.bottom(), rect.width(), 1, Tones(option.palette).separator());
}

bool isOpen(QStyleOption const& title)
{
    return title.state.testFlag(QStyle::State_Selected)
        && title.state.testFlag(QStyle::State_Sunken);
}

} // namespace

EdgeStyle::EdgeStyle()
    : QProxyStyle(toolkitsOwn)
{
}

void EdgeStyle::use()
{
    static bool isUsed = false;
    if (isUsed || QApplication::style()->name() != toolkitsOwn)
        return;
    isUsed = true;
    QApplication::setStyle(new EdgeStyle);
}

// What a desktop has chosen for itself stays as it is.
void EdgeStyle::polish(QPalette& palette)
{
    QProxyStyle::polish(palette);
    auto const toolkits = standardPalette();
    auto const replace = [&](QPalette::ColorGroup group, QPalette::ColorRole role, QColor color) {
        if (palette.color(group, role) == toolkits.color(group, role))
            palette.setColor(group, role, color);
    };
    Tones const tones(palette, Tones::Ground::gallery);
    for (auto const group : { QPalette::Active, QPalette::Inactive })
        replace(group, QPalette::PlaceholderText, tones.of(ColorRole::tertiary));
    for (auto const role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        replace(QPalette::Disabled, role, tones.unusable());
}

// A field that has the keyboard has an edge in the accent's colour.
void EdgeStyle::drawPrimitive(PrimitiveElement element, QStyleOption const* option,
    QPainter* painter, QWidget const* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!isOnDark(*option))
        return;
    if (element == PE_FrameLineEdit && !hasFocus(*option))
        drawEdge(*painter, *option, option->rect, corner);
    else if (element == PE_IndicatorCheckBox)
        drawEdge(*painter, *option, option->rect, 0);
}

void EdgeStyle::drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
    QWidget const* widget) const
{
    auto const* const entry = qstyleoption_cast<QStyleOptionMenuItem const*>(option);
    if (!entry)
        return QProxyStyle::drawControl(element, option, painter, widget);
    bool const isDivider = entry->menuItemType == QStyleOptionMenuItem::Separator;
    if (element == CE_MenuItem && isDivider && entry->text.isEmpty())
        return drawDivider(*painter, *entry);
    auto colored = *entry;
    colored.palette = entryColors(*entry, widget);
    QProxyStyle::drawControl(element, &colored, painter, widget);
    if (element == CE_MenuBarEmptyArea || (element == CE_MenuBarItem && !isOpen(*entry)))
        drawLineUnderBar(*painter, *entry);
}

void EdgeStyle::drawComplexControl(ComplexControl control, QStyleOptionComplex const* option,
    QPainter* painter, QWidget const* widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (!isOnDark(*option) || hasFocus(*option))
        return;
    if (control == CC_SpinBox)
        drawEdge(*painter, *option, option->rect.adjusted(0, 1, 0, -1), corner);
    else if (control == CC_ComboBox)
        drawEdge(*painter, *option, option->rect, corner);
}

QIcon EdgeStyle::standardIcon(
    StandardPixmap kind, QStyleOption const* option, QWidget const* widget) const
{
    if (kind == SP_ToolBarHorizontalExtensionButton)
        return symbolIcon(MainToolbar::moreSymbol, ColorRole::primary);
    return QProxyStyle::standardIcon(kind, option, widget);
}

} // namespace pixelhain
