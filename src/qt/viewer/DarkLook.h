#pragma once
#include <QFont>
#include <QPalette>

class QEvent;
class QPainter;
class QRectF;
class QWidget;

namespace pixelhain {

/// The viewer's colours: dark whatever the desktop has. The accent is left to the desktop.
[[nodiscard]] QPalette viewerPalette();

/// Of a menu over the viewer, which is a window of its own: a little lighter, so that it has an
/// edge.
[[nodiscard]] QPalette viewerMenuPalette();

/// Shows the widget's tip in the viewer's colours, if that is what the event asks for. To be called
/// first by the `event` of what has a tip there; true if nothing is left to do.
[[nodiscard]] bool showViewerTip(QWidget& widget, QEvent& event);

/// The ground of what lies over a photo: dark, and the photo shines through a little. White text
/// is readable on it whatever the photo.
void paintMaterial(QPainter& painter, QRectF const& rect, double cornerRadius);

/// The desktop's font at a size of `points` device-independent pixels, larger where the desktop's
/// own is larger than usual.
[[nodiscard]] QFont viewerFont(QFont font, double points, QFont::Weight weight = QFont::Normal);

} // namespace pixelhain
