#pragma once
#include "qt/viewer/PicturePainter.h"
#include "viewer/ViewerContainer.h"
#include "viewer/ZoomMotion.h"
#include <QBasicTimer>
#include <QWidget>
#include <chrono>
#include <optional>

class QNativeGestureEvent;
class QPinchGesture;

namespace pixelhain {

/// The photo of the viewer on the screen: draws it to the exact device pixels, and takes gestures,
/// mouse and wheel. Never waits for anything.
class ViewerImageWidget final : public QWidget {
public:
    ViewerImageWidget(
        ViewerContainer& container, PicturePainter::Services const& services, QWidget* parent);

    /// Another photo is shown, or none; it may blend over from what is on the screen.
    void photoChanged(std::chrono::milliseconds crossFade);
    /// Something of the photo has changed; it is shown within `time`.
    void pictureChanged(std::chrono::milliseconds time);

    /// A picture of an animation, in place of the one before.
    void showFrame(Bitmap const& frame);

    /// What was turned or pinched over something that lies on the photo.
    void takeWheel(QWheelEvent const& event);
    bool takeNativeGesture(QNativeGestureEvent const& event);

    /// The keys with Ctrl that zoom; false for any other.
    bool takeKey(QKeyEvent const& event);

    /// Whether the last frame showed all there is, sharp and at rest.
    bool isComplete() const;

    /// Called after each frame.
    std::function<void()> painted;

    /// The time by which everything moves; it never goes back.
    std::function<Milliseconds()> now;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct CrossFade {
        QImage before;
        Milliseconds duration { 0 };
        std::optional<Milliseconds> start; ///< once there is something to blend to
    };

    PictureArea area() const;
    PixelSize measured(double scale) const;
    void place();
    void animate();
    bool isMoving() const;
    QImage frozen();
    bool isThere() const;
    void advanceFade();
    void paintFade(QPainter& painter, QRect const& dirty);
    bool takePinch(QPinchGesture const& pinch);
    void updatePointer();

    ViewerContainer& container_;
    PicturePainter::Services services_;
    PicturePainter painter_;
    ZoomMotion motion_;
    QBasicTimer frames_;
    std::optional<CrossFade> fade_;
    std::optional<QPointF> pressed_;
    bool wasPressed_ = false; ///< since it came up, or since the last double click
    double nativeMagnification_ = 1;
    bool isComplete_ = false;
    bool hasFrame_ = false; ///< of an animation
};

} // namespace pixelhain
