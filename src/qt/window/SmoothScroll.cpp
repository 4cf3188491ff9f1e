#include "qt/window/SmoothScroll.h"
#include <cmath>

namespace pixelhain {

void SmoothScroll::start(double from, double goal, int frameMilliseconds)
{
    goal_ = goal;
    if (timer_.isActive())
        return;
    position_ = from;
    clock_.start();
    timer_.start(frameMilliseconds, Qt::PreciseTimer, this);
}

void SmoothScroll::timerEvent(QTimerEvent*)
{
    constexpr double nearEnough = 0.5;
    auto const passed = static_cast<double>(clock_.restart());
    position_ += (goal_ - position_) * (1 - std::exp(-passed / milliseconds));
    if (std::abs(goal_ - position_) < nearEnough) {
        position_ = goal_;
        timer_.stop();
    }
    move_(position_);
}

} // namespace pixelhain
