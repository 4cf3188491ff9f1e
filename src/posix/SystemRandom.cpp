#include "posix/SystemRandom.h"
#include <chrono>
#include <random>
#include <sys/random.h>

namespace pixelhain {

std::uint64_t SystemRandom::next()
{
    if (used_ == fetched_.size())
        refill();
    return fetched_[used_++];
}

// Before the kernel has gathered enough chance, shortly after the machine started, or where a
// sandbox forbids the call, the clock is better than a window that waits.
void SystemRandom::refill()
{
    used_ = 0;
    auto const got = ::getrandom(fetched_.data(), sizeof(fetched_), GRND_NONBLOCK);
    if (got == static_cast<ssize_t>(sizeof(fetched_)))
        return;
    auto const now = std::chrono::steady_clock::now().time_since_epoch().count();
    std::mt19937_64 engine(static_cast<std::uint64_t>(now));
    for (auto& number : fetched_)
        number = engine();
}

} // namespace pixelhain
