#pragma once
#include <algorithm>
#include <cstddef>
#include <thread>

namespace pixelhain {

/// How many files are to be looked at: on so many threads, each taking so many at a time.
struct LookPlan {
    std::size_t threads = 1;
    std::size_t filesAtATime = 1024;
};

/// What is in memory is told within microseconds: more threads than processors only queue for the
/// same locks of the kernel, and four for those of one folder. A disk that seeks and a server far
/// away take milliseconds, but hear many questions at once.
inline LookPlan planLooks(std::size_t files, bool waitsForDisk)
{
    constexpr std::size_t mostWaiting = 16;
    constexpr std::size_t mostBusy = 4;
    LookPlan plan;
    std::size_t most = mostWaiting;
    if (waitsForDisk)
        plan.filesAtATime = 4;
    else
        most = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, mostBusy);
    plan.threads = std::clamp<std::size_t>(files / plan.filesAtATime, 1, most);
    return plan;
}

} // namespace pixelhain
