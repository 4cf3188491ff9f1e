#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <vector>

namespace pixelhain {

/// Milliseconds that this thread has used so far, or that have passed.
struct Moment {
    double processor = 0;
    double wall = 0;

    static Moment now()
    {
        auto const read = [](clockid_t clock) {
            timespec time {};
            clock_gettime(clock, &time);
            return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
        };
        return { read(CLOCK_THREAD_CPUTIME_ID), read(CLOCK_MONOTONIC) };
    }
};

/// How long a piece of work takes again and again: on the processor, and on the clock.
class Times {
public:
    /// `tail`: the share of all times that lie below the second figure of three.
    explicit Times(double tail)
        : tail_(tail)
    {
    }

    template <typename Work> void measure(Work work)
    {
        auto const before = Moment::now();
        work();
        auto const after = Moment::now();
        processor_.push_back(after.processor - before.processor);
        wall_.push_back(after.wall - before.wall);
    }

    /// Median, tail and worst of each.
    void print(char const* name)
    {
        std::printf("  %-52s %6.2f %6.2f %6.2f   %6.2f %6.2f %6.2f  (%zu)\n", name,
            share(processor_, 0.5), share(processor_, tail_), share(processor_, 1),
            share(wall_, 0.5), share(wall_, tail_), share(wall_, 1), processor_.size());
    }

private:
    static double share(std::vector<double>& times, double part)
    {
        std::ranges::sort(times);
        auto const last = static_cast<double>(times.size() - 1);
        return times[static_cast<std::size_t>(last * part)];
    }

    double tail_;
    std::vector<double> processor_;
    std::vector<double> wall_;
};

} // namespace pixelhain
