#pragma once
#include <QFont>
#include <QPalette>

class QPainter;
class QRectF;

namespace pixelhain {

/// The viewer's colours: dark whatever the desktop has. The accent is left to the desktop.
[[nodiscard]] QPalette viewerPalette();

/// The ground of what lies over a photo: dark, and the photo shines through a little. White text
/// is readable on it whatever the photo.
void paintMaterial(QPainter& painter, QRectF const& rect, double cornerRadius);

/// The desktop's font at a size of `points` device-independent pixels, larger where the desktop's
/// own is larger than usual.
[[nodiscard]] QFont viewerFont(QFont font, double points, QFont::Weight weight = QFont::Normal);

} // namespace pixelhain
