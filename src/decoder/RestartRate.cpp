#include "decoder/RestartRate.h"
#include <algorithm>

namespace pixelhain {

void RestartRate::died(Time now)
{
    // Those that die during a wait were started before it.
    if (now < next_)
        return;
    bool const isStillTrouble = wait_ > Duration {} && now <= next_ + WorkerLimits::deathsWithin;
    if (!isStillTrouble && !isTooMany(now)) {
        wait_ = {};
        return;
    }
    wait_ = isStillTrouble ? std::min(wait_ * 2, longestWait_) : firstWait_;
    next_ = now + wait_;
}

bool RestartRate::isTooMany(Time now)
{
    std::erase_if(deaths_, [now](Time death) { return death + WorkerLimits::deathsWithin < now; });
    deaths_.push_back(now);
    if (deaths_.size() <= WorkerLimits::deaths)
        return false;
    deaths_.clear();
    return true;
}

} // namespace pixelhain
