#include "qt/viewer/ViewerImageWidget.h"
#include "qt/viewer/DevicePixels.h"
#include "qt/viewer/PreparedPictures.h"
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pixelhain {

namespace {

// A photo that is not there yet is waited for so long before the one before makes way.
constexpr Milliseconds longestWait { 700 };

std::function<Milliseconds()> runningClock()
{
    QElapsedTimer clock;
    clock.start();
    return [clock] { return Milliseconds(static_cast<double>(clock.nsecsElapsed()) / 1e6); };
}

} // namespace

ViewerImageWidget::ViewerImageWidget(
    ViewerContainer& container, PicturePainter::Services const& services, QWidget* parent)
    : QWidget(parent)
    , now(runningClock())
    , container_(container)
    , services_(services)
    , painter_(services, [this] { update(); })
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::StrongFocus);
    grabGesture(Qt::PinchGesture);
}

PictureArea ViewerImageWidget::area() const
{
    return { devicePixels(*this), devicePixelRatioF() };
}

PixelSize ViewerImageWidget::measured(double scale) const
{
    auto const& meta = container_.meta();
    return measuredSize(painter_.size(), meta ? meta->size : std::nullopt, scale);
}

void ViewerImageWidget::photoChanged(std::chrono::milliseconds crossFade)
{
    fade_.reset();
    if (crossFade.count() > 0 && !painter_.isEmpty())
        fade_ = CrossFade { frozen(), crossFade, std::nullopt };
    painter_.clear();
    hasFrame_ = false;
    pressed_.reset();
    nativeMagnification_ = 1;
    motion_ = ZoomMotion();
    isComplete_ = false;
    if (fade_)
        animate();
    pictureChanged({});
}

void ViewerImageWidget::pictureChanged(std::chrono::milliseconds time)
{
    auto const* const image = container_.image();
    if (image) {
        // A still picture stands for an animation until its first frame is there.
        if (!image->isAnimated() || !hasFrame_)
            painter_.show(image->shown());
        painter_.showStandIn(image->standIn(), container_.standInShape());
        if (image->content() == ViewerImage::Content::failure)
            painter_.clear();
        motion_.moveTo(image->zoom(), time, now());
    }
    place();
    if (isMoving())
        animate();
    updatePointer();
    isComplete_ = false;
    update();
}

void ViewerImageWidget::showFrame(Bitmap const& frame)
{
    painter_.showFrame(frame);
    hasFrame_ = true;
    place();
    isComplete_ = false;
    update();
}

bool ViewerImageWidget::isMoving() const
{
    return motion_.isMoving(now()) || fade_;
}

void ViewerImageWidget::animate()
{
    if (frames_.isActive())
        return;
    auto const refresh = screen() ? screen()->refreshRate() : 60.0;
    auto const frame = std::clamp(static_cast<int>(1000 / std::max(refresh, 1.0)), 4, 16);
    frames_.start(frame, Qt::PreciseTimer, this);
}

// Where nothing is painted, as in a window that cannot be seen, time passes all the same.
void ViewerImageWidget::timerEvent(QTimerEvent*)
{
    advanceFade();
    if (!isMoving())
        frames_.stop();
    place();
    update();
}

void ViewerImageWidget::hideEvent(QHideEvent*)
{
    fade_.reset();
    frames_.stop();
    wasPressed_ = false;
}

void ViewerImageWidget::place()
{
    auto const zoom = motion_.at(now());
    painter_.place(area().pixels, picturePlace(area(), measured(zoom.scale), zoom));
}

void ViewerImageWidget::resizeEvent(QResizeEvent*)
{
    services_.prepared.setArea(area().pixels);
    place();
}

// What stands on the screen now, for blending over.
QImage ViewerImageWidget::frozen()
{
    auto const size = area().pixels;
    QImage image(size.width, size.height, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    QPainter painter(&image);
    painter_.paint(painter, image.rect());
    return image;
}

void ViewerImageWidget::paintEvent(QPaintEvent* event)
{
    auto const scale = devicePixelRatioF();
    auto const pixels = area().pixels;
    services_.prepared.setArea(pixels);
    place();
    {
        QPainter painter(this);
        useDevicePixels(painter, scale);
        auto const dirty = touchedPixels(event->rect(), scale)
                               .intersected({ 0, 0, pixels.width, pixels.height });
        painter_.paint(painter, dirty);
        advanceFade();
        if (fade_)
            paintFade(painter, dirty);
    }
    auto const* const image = container_.image();
    if (image && image->content() != ViewerImage::Content::spinner)
        container_.shown();
    isComplete_ = !isMoving() && (painter_.isEmpty() || painter_.isSharp());
    if (painted)
        painted();
}

// Whether there is something to blend to; a photo that cannot be read has its own view.
bool ViewerImageWidget::isThere() const
{
    auto const* const image = container_.image();
    return !painter_.isEmpty() || (image && image->content() == ViewerImage::Content::failure);
}

void ViewerImageWidget::advanceFade()
{
    if (!fade_)
        return;
    if (!fade_->start)
        fade_->start = now() + (isThere() ? Milliseconds(0) : longestWait);
    else if (isThere() && *fade_->start > now())
        fade_->start = now();
    if (now() - *fade_->start >= fade_->duration)
        fade_.reset();
}

void ViewerImageWidget::paintFade(QPainter& painter, QRect const& dirty)
{
    auto const share = easeInOut((now() - *fade_->start) / fade_->duration);
    painter.setOpacity(1 - share);
    painter.drawImage(dirty.topLeft(), fade_->before, dirty);
    painter.setOpacity(1);
}

bool ViewerImageWidget::isComplete() const
{
    auto const* const image = container_.image();
    return isComplete_ && image && !image->isLoading();
}

} // namespace pixelhain
