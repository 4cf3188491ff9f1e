#pragma once
#include "base/Task.h"
#include <chrono>
#include <functional>
#include <optional>

namespace pixelhain {

class MainLoop;

/// Where a gallery that is being scrolled will be soon, if it goes on as it does. A single step out
/// of rest, however long, foretells nothing: that is a turned page or a leap, or the first of many
/// steps. Main thread only.
class ScrollForecast {
public:
    /// The speed is the way in one beat. Without a movement for one beat, it is at rest.
    static constexpr std::chrono::milliseconds beat { 50 };

    /// `changed` is called when time alone has changed the speed.
    ScrollForecast(MainLoop& loop, std::function<void()> changed);

    /// The gallery was moved to this position.
    void moveTo(double position);
    /// It is on its way there by itself; a step that is known to be whole is no leap.
    void headFor(double goal);

    /// What is shown is something else now: the next position is where it rests, however far away.
    void forget();

    /// The way in points that it will go within so many beats.
    [[nodiscard]] double way(int beats) const;

    /// The way in points of a single step out of rest, for one beat.
    [[nodiscard]] double leap() const { return leap_; }

    /// The direction of the last movement.
    [[nodiscard]] bool isUpward() const { return isUpward_; }

private:
    void beatEnded();

    MainLoop& loop_;
    std::function<void()> changed_;
    std::optional<double> position_ = 0; ///< none: not known yet
    double start_ = 0; ///< of this beat
    double before_ = 0; ///< the way in the last beat
    double leap_ = 0;
    bool hasMoved_ = false; ///< in this beat
    bool isUpward_ = false;
    Task beat_;
};

} // namespace pixelhain
