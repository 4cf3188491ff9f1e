#include "viewer/ViewerImage.h"
#include <algorithm>
#include <cmath>
#include <utility>

namespace pixelhain {

namespace {

constexpr std::chrono::milliseconds atOnce { 0 };

double clampedScale(double scale)
{
    return std::clamp(scale, ViewerImage::smallestScale, ViewerImage::largestScale);
}

} // namespace

ViewerImage::ViewerImage(
    ViewerSource& source, MainLoop& loop, PhotoItem item, bool isAnimated, Changed changed)
    : source_(source)
    , loop_(loop)
    , item_(std::move(item))
    , isAnimated_(isAnimated)
    , changed_(std::move(changed))
    , image_(source.cachedDisplayImage(item_.url))
    , standIn_(image_ ? nullptr : source.cachedThumbnail(item_.url))
{
}

void ViewerImage::keepStill(ImageRef picture, ImageRef standIn)
{
    if (!image_)
        image_ = std::move(picture);
    if (!image_ && standIn)
        standIn_ = std::move(standIn);
}

void ViewerImage::appear()
{
    if (image_ || isAnimated_)
        return;
    imageLoad_ = source_.loadDisplayImage(item_.url, [this](ImageRef image) {
        image_ = std::move(image);
        failed_ = !image_;
        cancelStandIn();
        standIn_ = nullptr;
        changed_(atOnce);
    });
    // Photos that are only paged past are not to take a processor from the one that is sought.
    if (standIn_)
        standInWait_ = loop_.after(previewDelay, [this] { loadStandIn(); });
    else
        loadStandIn();
    spinnerWait_ = loop_.after(spinnerDelay, [this] {
        hasWaited_ = true;
        useStandIn(nullptr);
        if (showsSpinner())
            changed_(atOnce);
    });
}

void ViewerImage::loadStandIn()
{
    standInLoad_ = source_.loadPreview(
        item_.url, [this](ImageRef picture) { useStandIn(std::move(picture)); });
}

void ViewerImage::cancelStandIn()
{
    standInWait_.cancel();
    standInLoad_.cancel();
    spinnerWait_.cancel();
}

void ViewerImage::useStandIn(ImageRef picture)
{
    // A thumbnail may have been made since this was made.
    if (!picture && !standIn_)
        picture = source_.cachedThumbnail(item_.url);
    auto const side = [](ImageRef const& ref) { return ref ? ref->image.size.longestSide() : 0; };
    if (side(picture) <= side(standIn_))
        return;
    standIn_ = std::move(picture);
    changed_(atOnce);
}

ViewerImage::Content ViewerImage::content() const
{
    if (isAnimated_)
        return Content::animation;
    if (shown() || standIn_)
        return Content::picture;
    return failed_ ? Content::failure : Content::spinner;
}

std::vector<ImageRef> ViewerImage::takePictures()
{
    imageLoad_.cancel();
    cancelStandIn();
    fullLoads_.clear();
    return { std::exchange(image_, nullptr), std::exchange(full_, nullptr),
        std::exchange(standIn_, nullptr) };
}

// Each change asks, also while an earlier one is waited for; the source decodes only once.
void ViewerImage::setScale(double scale)
{
    if (scale == zoom_.scale)
        return;
    zoom_.scale = scale;
    if (scale > fullImageScale && !isAnimated_ && !full_)
        loadFull();
}

void ViewerImage::loadFull()
{
    fullLoads_.push_back(source_.loadFullImage(item_.url, [this](ImageRef image) {
        if (!image)
            return;
        full_ = std::move(image);
        changed_(atOnce);
    }));
}

void ViewerImage::pinch(double magnification)
{
    endWheel();
    magnify(magnification);
}

void ViewerImage::magnify(double magnification)
{
    if (!isPinching_ && std::abs(magnification - 1) < pinchThreshold)
        return;
    isPinching_ = true;
    setScale(clampedScale(baseScale_ * magnification));
    changed_(atOnce);
}

void ViewerImage::endPinch()
{
    if (!std::exchange(isPinching_, false))
        return;
    rest();
}

void ViewerImage::rest()
{
    baseScale_ = zoom_.scale;
    if (!isZoomed())
        reset(snapTime);
}

void ViewerImage::reset(std::chrono::milliseconds time)
{
    forgetWheel();
    zoom_ = {};
    baseScale_ = smallestScale;
    baseOffset_ = {};
    changed_(time);
}

void ViewerImage::drag(Point translation)
{
    if (!isDragging_ && std::hypot(translation.x, translation.y) < dragThreshold)
        return;
    isDragging_ = true;
    if (!isZoomed())
        return;
    zoom_.offset = { baseOffset_.x + translation.x, baseOffset_.y + translation.y };
    changed_(atOnce);
}

void ViewerImage::endDrag()
{
    if (std::exchange(isDragging_, false))
        baseOffset_ = zoom_.offset;
}

void ViewerImage::doubleClick()
{
    if (isZoomed()) {
        reset(doubleClickTime);
        return;
    }
    zoomTo(doubleClickScale, doubleClickTime);
}

void ViewerImage::turnWheel(double notches)
{
    // What goes beyond the limits is not to be turned back first.
    wheelMagnification_ = std::clamp(wheelMagnification_ * std::pow(stepFactor, notches),
        smallestScale / baseScale_, largestScale / baseScale_);
    isTurning_ = true;
    wheelEnd_ = loop_.after(wheelPause, [this] { endWheel(); });
    magnify(wheelMagnification_);
}

void ViewerImage::endWheel()
{
    if (!isTurning_)
        return;
    forgetWheel();
    endPinch();
}

void ViewerImage::forgetWheel()
{
    isTurning_ = false;
    wheelMagnification_ = 1;
    wheelEnd_.cancel();
}

void ViewerImage::zoomTo(double scale, std::chrono::milliseconds time)
{
    auto const goal = clampedScale(scale);
    if (goal <= stillFittedScale) {
        reset(time);
        return;
    }
    forgetWheel();
    setScale(goal);
    baseScale_ = goal;
    changed_(time);
}

} // namespace pixelhain
