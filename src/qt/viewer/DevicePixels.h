#pragma once
#include "base/Geometry.h"
#include <QPainter>
#include <QWidget>
#include <cmath>

namespace pixelhain {

/// The widget's size in whole device pixels.
[[nodiscard]] inline PixelSize devicePixels(QWidget const& widget)
{
    auto const scale = widget.devicePixelRatioF();
    auto const pixels = [scale](int points) { return static_cast<int>(std::ceil(points * scale)); };
    return { pixels(widget.width()), pixels(widget.height()) };
}

/// Brings `painter` to whole device pixels that count from the widget's own corner: images are then
/// copied, whatever the scale. The corner itself may lie between two pixels on fractional scales.
inline void useDevicePixels(QPainter& painter, double scale)
{
    auto const corner = painter.deviceTransform().map(QPointF(0, 0));
    auto const toCorner = QPointF(std::round(corner.x()), std::round(corner.y())) - corner;
    painter.setWorldTransform(QTransform::fromTranslate(toCorner.x() / scale, toCorner.y() / scale)
                                  .scale(1 / scale, 1 / scale));
}

/// The device pixels that `points` touches.
[[nodiscard]] inline QRect touchedPixels(QRect const& points, double scale)
{
    auto const left = static_cast<int>(std::floor(points.left() * scale));
    auto const top = static_cast<int>(std::floor(points.top() * scale));
    auto const right = static_cast<int>(std::ceil((points.left() + points.width()) * scale));
    auto const bottom = static_cast<int>(std::ceil((points.top() + points.height()) * scale));
    return { left, top, right - left + 1, bottom - top + 1 };
}

} // namespace pixelhain
