#pragma once
#include "viewer/PictureGeometry.h"
#include <chrono>

namespace pixelhain {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// How far a movement has come after a share `time` (0 to 1) of its duration.
[[nodiscard]] double easeOut(double time);
[[nodiscard]] double easeInOut(double time);

/// What is on the screen while a zoom changes: it slows down towards its goal.
class ZoomMotion {
public:
    /// Moves to `goal` from wherever the motion stands at `now`; at once if `duration` is 0.
    void moveTo(Zoom const& goal, Milliseconds duration, Milliseconds now);

    [[nodiscard]] Zoom at(Milliseconds now) const;
    [[nodiscard]] bool isMoving(Milliseconds now) const { return now < start_ + duration_; }
    [[nodiscard]] Zoom const& goal() const { return goal_; }

private:
    Zoom from_;
    Zoom goal_;
    Milliseconds start_ { 0 };
    Milliseconds duration_ { 0 };
};

} // namespace pixelhain
