#include "qt/viewer/DarkLook.h"
#include "qt/window/PlainTip.h"
#include <QApplication>
#include <QFontInfo>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr QColor ground(30, 30, 32);
constexpr QColor text(242, 242, 244);
constexpr int materialOpacity = 230; // of 255: grey text too keeps 4.5 to 1 over white
constexpr double usualFontPixels = 13;

} // namespace

QPalette viewerPalette()
{
    struct Role {
        QPalette::ColorRole role;
        QColor color;
    };
    QPalette dark;
    for (auto const& [role, color] : { Role { QPalette::Window, ground },
             Role { QPalette::WindowText, text }, Role { QPalette::Base, ground },
             Role { QPalette::AlternateBase, ground.lighter(120) }, Role { QPalette::Text, text },
             Role { QPalette::BrightText, Qt::white }, Role { QPalette::Button, ground },
             Role { QPalette::ButtonText, text }, Role { QPalette::Light, ground.lighter(160) },
             Role { QPalette::Midlight, ground.lighter(145) },
             Role { QPalette::Mid, ground.lighter(130) }, Role { QPalette::Dark, Qt::black },
             Role { QPalette::Shadow, Qt::black },
             Role { QPalette::ToolTipBase, ground.lighter(140) },
             Role { QPalette::ToolTipText, text },
             Role { QPalette::PlaceholderText, QColor(170, 170, 174) } })
        dark.setColor(role, color);
    for (auto const role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        dark.setColor(QPalette::Disabled, role, QColor(130, 130, 134));
    return dark;
}

QPalette viewerMenuPalette()
{
    auto palette = viewerPalette();
    palette.setColor(QPalette::Base, ground.lighter(165));
    return palette;
}

// The toolkit has one tip for all, in the colours of the desktop.
bool showViewerTip(QWidget& widget, QEvent& event)
{
    if (event.type() != QEvent::ToolTip || widget.toolTip().isEmpty())
        return false;
    QToolTip::showText(
        static_cast<QHelpEvent&>(event).globalPos(), plainTip(widget.toolTip()), &widget);
    for (auto* const window : QApplication::topLevelWidgets())
        if (window->inherits("QTipLabel"))
            window->setPalette(viewerPalette());
    return true;
}

void paintMaterial(QPainter& painter, QRectF const& rect, double cornerRadius)
{
    auto color = ground;
    color.setAlpha(materialOpacity);
    if (cornerRadius <= 0) {
        painter.fillRect(rect, color);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, cornerRadius, cornerRadius);
}

QFont viewerFont(QFont font, double points, QFont::Weight weight)
{
    auto const usual = std::max(1.0, QFontInfo(QApplication::font()).pixelSize() / usualFontPixels);
    font.setPixelSize(static_cast<int>(std::lround(points * usual)));
    font.setWeight(weight);
    return font;
}

} // namespace pixelhain
