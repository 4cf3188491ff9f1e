#include "qt/viewer/ViewerImageWidget.h"
#include <QGestureEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>
#include <cmath>
#include <utility>

namespace pixelhain {

bool ViewerImageWidget::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::NativeGesture:
        if (takeNativeGesture(*static_cast<QNativeGestureEvent*>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::Gesture: {
        auto* const gestures = static_cast<QGestureEvent*>(event);
        auto* const pinch = static_cast<QPinchGesture*>(gestures->gesture(Qt::PinchGesture));
        if (pinch && takePinch(*pinch)) {
            gestures->accept(pinch);
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QWidget::event(event);
}

// A touchpad tells by how much the whole magnification has changed since its last event: what it
// says is added up.
bool ViewerImageWidget::takeNativeGesture(QNativeGestureEvent const& event)
{
    auto* const image = container_.image();
    if (!image)
        return false;
    switch (event.gestureType()) {
    case Qt::BeginNativeGesture:
        nativeMagnification_ = 1;
        return true;
    case Qt::ZoomNativeGesture:
        nativeMagnification_ += event.value();
        image->pinch(nativeMagnification_);
        return true;
    case Qt::EndNativeGesture:
        nativeMagnification_ = 1;
        image->endPinch();
        return true;
    case Qt::SmartZoomNativeGesture:
        image->doubleClick();
        return true;
    default:
        return false;
    }
}

bool ViewerImageWidget::takePinch(QPinchGesture const& pinch)
{
    auto* const image = container_.image();
    if (!image)
        return false;
    image->pinch(pinch.totalScaleFactor());
    if (pinch.state() == Qt::GestureFinished || pinch.state() == Qt::GestureCanceled)
        image->endPinch();
    return true;
}

void ViewerImageWidget::updatePointer()
{
    auto const* const image = container_.image();
    if (!image || !image->isZoomed())
        unsetCursor();
    else
        setCursor(pressed_ ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
}

void ViewerImageWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setFocus(Qt::MouseFocusReason);
    pressed_ = event->position();
    wasPressed_ = true;
    updatePointer();
}

void ViewerImageWidget::mouseMoveEvent(QMouseEvent* event)
{
    auto* const image = container_.image();
    if (!pressed_ || !image)
        return;
    auto const way = event->position() - *pressed_;
    image->drag({ way.x(), way.y() });
}

void ViewerImageWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !std::exchange(pressed_, std::nullopt))
        return;
    if (auto* const image = container_.image())
        image->endDrag();
    updatePointer();
}

// Of two clicks in the gallery the first opens the photo, and the second is meant for nothing here:
// both must have come to the photo itself.
void ViewerImageWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    auto* const image = container_.image();
    if (event->button() == Qt::LeftButton && std::exchange(wasPressed_, false) && image)
        image->doubleClick();
}

void ViewerImageWidget::wheelEvent(QWheelEvent* event)
{
    event->accept();
    takeWheel(*event);
}

void ViewerImageWidget::takeWheel(QWheelEvent const& event)
{
    auto* const image = container_.image();
    auto const turned = event.angleDelta();
    auto const angle = std::abs(turned.y()) >= std::abs(turned.x()) ? turned.y() : turned.x();
    // What a touchpad goes on with after the fingers have left it is nobody's wish for photos.
    if (!image || angle == 0 || event.phase() == Qt::ScrollMomentum)
        return;
    if (event.modifiers().testFlag(Qt::ControlModifier))
        image->turnWheel(angle / WheelPager::notch);
    else
        container_.turnWheel(angle);
}

bool ViewerImageWidget::takeKey(QKeyEvent const& event)
{
    auto* const image = container_.image();
    auto const held = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (!image || held != Qt::ControlModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        image->zoomIn();
        return true;
    case Qt::Key_Minus:
        image->zoomOut();
        return true;
    case Qt::Key_0:
        image->showFitted();
        return true;
    case Qt::Key_1: {
        constexpr double anyZoom = 2;
        image->showPixels(pixelScale(area(), measured(anyZoom)));
        return true;
    }
    default:
        return false;
    }
}

} // namespace pixelhain
