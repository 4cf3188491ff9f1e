#include "model/BrowserModel.h"
#include "model/Messages.h"
#include "model/SlideshowRules.h"
#include "ports/MainLoop.h"
#include "ports/MainWindow.h"
#include "ports/ScreenAwake.h"
#include <chrono>
#include <utility>

namespace pixelhain {

// What the operations have in common, and what the timer does.
struct BrowserModel::SlideshowSteps {
    BrowserModel& model;

    void start();
    void enterFullScreen();
    void leaveFullScreen();
    void advanceSlideshow(std::ptrdiff_t delta, ViewerTransition transition);
    void restartSlideshowTimer();
    void startTimer(std::chrono::milliseconds interval);
    void prefetchSlideshow();
};

void BrowserModel::startSlideshow()
{
    if (!photos_.takeBack(PhotoFilter::Purpose::slideshow))
        photos_.whenShown(
            PhotoFilter::Purpose::slideshow, [this] { SlideshowSteps { *this }.start(); });
}

void BrowserModel::SlideshowSteps::start()
{
    if (model.items->empty())
        return;
    auto& random = model.ports_.random;
    auto order = slideshowOrder(model.selection, *model.items);
    auto const first = model.viewerIndex->value_or(model.cursor->value_or(order.front()));
    if (model.slideshowShuffle)
        shuffle(order, random);
    auto position = positionOf(first, order).value_or(0);
    if (model.slideshowShuffle)
        std::swap(order.front(), order[std::exchange(position, 0)]);
    model.slideshow_.order = std::move(order);
    model.slideshow_.position = position;
    model.showInViewer(model.slideshow_.order[position], ViewerTransition::none);
    model.isSlideshow = true;
    model.isSlideshowPaused = false;
    enterFullScreen();
    if (model.window_)
        model.window_->hidePointerUntilMoved();
    prefetchSlideshow();
    restartSlideshowTimer();
}

void BrowserModel::stopSlideshow()
{
    photos_.takeBack(PhotoFilter::Purpose::slideshow);
    slideshow_.timer = Task();
    slideshow_.awake = Task();
    if (!*isSlideshow)
        return;
    isSlideshow = false;
    isSlideshowPaused = false;
    slideshow_.order.clear();
    SlideshowSteps { *this }.leaveFullScreen();
}

void BrowserModel::toggleSlideshowPause()
{
    if (!*isSlideshow)
        return;
    isSlideshowPaused = !isSlideshowPaused;
    SlideshowSteps steps { *this };
    if (!*isSlideshowPaused)
        steps.advanceSlideshow(+1, ViewerTransition::crossFade);
    steps.restartSlideshowTimer();
}

void BrowserModel::stepSlideshow(std::ptrdiff_t delta)
{
    SlideshowSteps steps { *this };
    steps.advanceSlideshow(delta, ViewerTransition::none);
    steps.restartSlideshowTimer();
}

// A show that starts anew while one runs keeps to what that one did to the window.
void BrowserModel::SlideshowSteps::enterFullScreen()
{
    auto* const window = model.window_;
    if (window && window->isFullScreen())
        return;
    model.slideshow_.enteredFullScreen = true;
    if (window)
        window->toggleFullScreen();
}

void BrowserModel::SlideshowSteps::leaveFullScreen()
{
    auto* const window = model.window_;
    auto const entered = std::exchange(model.slideshow_.enteredFullScreen, false);
    if (entered && window && window->isFullScreen())
        window->toggleFullScreen();
}

void BrowserModel::SlideshowSteps::advanceSlideshow(
    std::ptrdiff_t delta, ViewerTransition transition)
{
    auto& show = model.slideshow_;
    if (!*model.isSlideshow || show.order.empty())
        return;
    show.position = wrapped(show.position, delta, show.order.size());
    auto const photo = show.order[show.position];
    if (photo >= model.items->size()) {
        model.stopSlideshow();
        return;
    }
    model.showInViewer(photo, transition);
    model.cursor = photo;
    prefetchSlideshow();
}

// A change of the interval counts from the next start on.
void BrowserModel::SlideshowSteps::restartSlideshowTimer()
{
    auto& show = model.slideshow_;
    show.timer = Task();
    if (!*model.isSlideshow || *model.isSlideshowPaused) {
        show.awake = Task();
        return;
    }
    if (!show.awake)
        show.awake = model.ports_.screenAwake.keepAwake(messages::slideshow);
    std::chrono::duration<double> const seconds(model.slideshowInterval.get());
    startTimer(std::chrono::duration_cast<std::chrono::milliseconds>(seconds));
}

void BrowserModel::SlideshowSteps::startTimer(std::chrono::milliseconds interval)
{
    auto const wake = [&browser = model, interval] {
        SlideshowSteps steps { browser };
        steps.advanceSlideshow(+1, ViewerTransition::crossFade);
        if (*browser.isSlideshow)
            steps.startTimer(interval);
    };
    model.slideshow_.timer = model.ports_.loop.after(interval, wake);
}

void BrowserModel::SlideshowSteps::prefetchSlideshow()
{
    auto const& show = model.slideshow_;
    model.prefetch(photosAfter(show.position, show.order, model.items->size()));
}

} // namespace pixelhain
