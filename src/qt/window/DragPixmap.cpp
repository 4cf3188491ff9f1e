#include "qt/window/DragPixmap.h"
#include "qt/window/Tones.h"
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr double badgeHeight = 22; // points
constexpr double badgePadding = 7;
constexpr double cornerRadius = 4;

QImage scaledPicture(DragPicture const& drag)
{
    auto const longest = static_cast<int>(std::lround(DragPicture::longestSide * drag.scale));
    if (drag.picture.isNull()) {
        QImage blank(longest, longest, QImage::Format_ARGB32_Premultiplied);
        blank.fill(Tones(drag.palette).of(ColorRole::tertiary));
        return blank;
    }
    auto picture = drag.picture;
    picture.setDevicePixelRatio(1);
    if (std::max(picture.width(), picture.height()) <= longest)
        return picture;
    return picture.scaled(longest, longest, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QPixmap DragPicture::pixmap() const
{
    auto const shown = scaledPicture(*this);
    auto const label = QString::number(count);
    auto labelFont = font;
    labelFont.setBold(true);
    labelFont.setPixelSize(std::max(1, static_cast<int>(std::lround(12 * scale))));
    auto const height = std::round(badgeHeight * scale);
    auto const width = std::max(height,
        std::ceil(QFontMetricsF(labelFont).horizontalAdvance(label)) + 2 * badgePadding * scale);
    auto const over = count > 1 ? std::round(height / 2) : 0; // the badge stands out by half
    QImage whole(shown.width() + static_cast<int>(over), shown.height() + static_cast<int>(over),
        QImage::Format_ARGB32_Premultiplied);
    whole.fill(Qt::transparent);
    QPainter painter(&whole);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    QRectF const area(0, over, shown.width(), shown.height());
    outline.addRoundedRect(area, cornerRadius * scale, cornerRadius * scale);
    painter.setClipPath(outline);
    painter.setOpacity(0.9);
    painter.drawImage(area.topLeft(), shown);
    painter.setClipping(false);
    painter.setOpacity(1);
    if (count > 1) {
        auto const tones = Tones(palette);
        QRectF const badge(std::max(0.0, whole.width() - width), 0, width, height);
        auto const line = std::max(1.0, 1.5 * scale);
        painter.setPen(QPen(Qt::white, line));
        painter.setBrush(tones.of(ColorRole::accent));
        auto const inner = badge.adjusted(line / 2, line / 2, -line / 2, -line / 2);
        painter.drawRoundedRect(inner, inner.height() / 2, inner.height() / 2);
        painter.setFont(labelFont);
        painter.setPen(Qt::white);
        painter.drawText(badge, Qt::AlignCenter | Qt::TextSingleLine, label);
    }
    painter.end();
    auto pixmap = QPixmap::fromImage(whole);
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

} // namespace pixelhain
