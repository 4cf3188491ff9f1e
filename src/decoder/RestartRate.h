#pragma once
#include "decoder/WorkerLimits.h"
#include <chrono>
#include <vector>

namespace pixelhain {

/// How soon workers may follow those that died: at once, until too many have died in a short time.
/// Then every further death doubles the wait, until after a wait none dies for as long as deaths
/// are counted.
class RestartRate {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    explicit RestartRate(Duration firstWait = WorkerLimits::firstWait,
        Duration longestWait = WorkerLimits::longestWait)
        : firstWait_(firstWait)
        , longestWait_(longestWait)
    {
    }

    void died(Time now);
    /// When the next worker may start; in the past if at once.
    [[nodiscard]] Time next() const { return next_; }

private:
    [[nodiscard]] bool isTooMany(Time now);

    Duration firstWait_;
    Duration longestWait_;
    Duration wait_ {};
    std::vector<Time> deaths_;
    Time next_ {};
};

} // namespace pixelhain
