#include "window/ScrollForecast.h"
#include "ports/MainLoop.h"
#include <cmath>
#include <utility>

namespace pixelhain {

ScrollForecast::ScrollForecast(MainLoop& loop, std::function<void()> changed)
    : loop_(loop)
    , changed_(std::move(changed))
{
}

void ScrollForecast::moveTo(double position)
{
    auto const from = std::exchange(position_, position).value_or(position);
    if (position == from)
        return;
    isUpward_ = position < from;
    auto const step = std::abs(position - from);
    hasMoved_ = true;
    if (beat_)
        return;
    leap_ = step;
    start_ = position;
    beat_ = loop_.after(beat, [this] { beatEnded(); });
}

void ScrollForecast::headFor(double goal)
{
    moveTo(goal);
    leap_ = 0;
}

void ScrollForecast::forget()
{
    position_.reset();
    before_ = 0;
    leap_ = 0;
    hasMoved_ = false;
    isUpward_ = false;
    beat_.cancel();
}

double ScrollForecast::way(int beats) const
{
    if (!beat_)
        return 0;
    auto const now = position_.value_or(start_) - start_;
    return beats * (std::abs(now) > std::abs(before_) ? now : before_);
}

void ScrollForecast::beatEnded()
{
    before_ = *position_ - start_;
    start_ = *position_;
    leap_ = 0;
    beat_ = Task();
    if (std::exchange(hasMoved_, false))
        beat_ = loop_.after(beat, [this] { beatEnded(); });
    changed_();
}

} // namespace pixelhain
