#include "qt/window/EdgeStyle.h"
#include "qt/window/SymbolIcon.h"
#include "qt/window/Tones.h"
#include "window/MainToolbar.h"
#include <QApplication>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <utility>

namespace pixelhain {

namespace {

QString const toolkitsOwn = QStringLiteral("fusion");
constexpr double corner = 2; // as the style below has it

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
