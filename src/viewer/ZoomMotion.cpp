#include "viewer/ZoomMotion.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

// A parabola each: the speed falls evenly to nothing, or rises evenly before.
double easeOut(double time)
{
    auto const left = 1 - std::clamp(time, 0.0, 1.0);
    return 1 - left * left;
}

double easeInOut(double time)
{
    auto const within = std::clamp(time, 0.0, 1.0);
    return within < 0.5 ? 2 * within * within : 1 - 2 * (1 - within) * (1 - within);
}

void ZoomMotion::moveTo(Zoom const& goal, Milliseconds duration, Milliseconds now)
{
    from_ = duration > Milliseconds::zero() ? at(now) : goal;
    goal_ = goal;
    start_ = now;
    duration_ = duration;
}

Zoom ZoomMotion::at(Milliseconds now) const
{
    if (!isMoving(now))
        return goal_;
    auto const way = easeOut((now - start_) / duration_);
    auto const between = [way](double from, double to) { return from + (to - from) * way; };
    return { between(from_.scale, goal_.scale),
        { between(from_.offset.x, goal_.offset.x), between(from_.offset.y, goal_.offset.y) } };
}

} // namespace pixelhain
