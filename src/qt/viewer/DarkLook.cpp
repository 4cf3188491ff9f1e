#include "qt/viewer/DarkLook.h"
#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr QColor ground(30, 30, 32);
constexpr QColor text(242, 242, 244);
constexpr int materialOpacity = 200; // of 255: text keeps a contrast of 4.5 to 1 over white
constexpr double usualFontPixels = 13;

} // namespace

QPalette darkPalette(QPalette const& desktop)
{
    auto const accent = desktop.color(QPalette::Active, QPalette::Highlight);
    QPalette dark(text, ground, ground.lighter(160), Qt::black, ground.lighter(130), text,
        Qt::white, ground, ground);
    for (auto const group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        dark.setColor(group, QPalette::Highlight, accent);
        dark.setColor(group, QPalette::HighlightedText, Qt::white);
        dark.setColor(group, QPalette::ToolTipBase, ground.lighter(140));
        dark.setColor(group, QPalette::ToolTipText, text);
        dark.setColor(group, QPalette::PlaceholderText, QColor(170, 170, 174));
    }
    for (auto const role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        dark.setColor(QPalette::Disabled, role, QColor(130, 130, 134));
    return dark;
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
