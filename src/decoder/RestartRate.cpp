#include "decoder/RestartRate.h"
#include <algorithm>

namespace pixelhain {

void RestartRate::died(Time now)
{
    deaths_.push_back(now);
    // A wait may be longer than the time over which deaths count: it is part of the same trouble.
    while (deaths_.front() + WorkerLimits::deathsWithin + wait_ < now)
        deaths_.pop_front();
    if (deaths_.size() <= WorkerLimits::deaths) {
        wait_ = {};
        return;
    }
    deaths_.pop_front();
    wait_ = wait_ == Duration {} ? firstWait_ : std::min(wait_ * 2, longestWait_);
    next_ = now + wait_;
}

} // namespace pixelhain
