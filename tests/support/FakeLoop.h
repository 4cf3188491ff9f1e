#pragma once
#include "ports/MainLoop.h"
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace pixelhain {

/// A main loop whose clock moves only when a test moves it. Posting is allowed from any thread.
class FakeLoop final : public MainLoop {
public:
    void post(Work work) override
    {
        std::scoped_lock const guard(lock_);
        posted_.push_back(std::move(work));
    }

    Task after(std::chrono::milliseconds delay, Work work) override
    {
        auto const alive = std::make_shared<Work>(std::move(work));
        timers_->emplace(now_ + delay, alive);
        return Task([timers = std::weak_ptr(timers_), weak = std::weak_ptr(alive)] {
            auto const list = timers.lock();
            auto const mine = weak.lock();
            if (list && mine)
                std::erase_if(*list, [&](auto const& timer) { return timer.second == mine; });
        });
    }

    /// Runs what was posted, including what that posts in turn.
    void settle()
    {
        while (auto work = next())
            work();
    }

    /// Lets time pass, firing every timer at its own moment.
    void advance(std::chrono::milliseconds by)
    {
        auto const end = now_ + by;
        settle();
        while (!timers_->empty() && timers_->begin()->first <= end) {
            auto const timer = timers_->extract(timers_->begin());
            now_ = timer.key();
            (*timer.mapped())();
            settle();
        }
        now_ = end;
    }

    /// The clock.
    std::chrono::milliseconds now() const { return now_; }

    /// Timers that have not fired.
    std::size_t timers() const { return timers_->size(); }

private:
    using Timers = std::multimap<std::chrono::milliseconds, std::shared_ptr<Work>>;

    Work next()
    {
        std::scoped_lock const guard(lock_);
        if (posted_.empty())
            return nullptr;
        auto work = std::move(posted_.front());
        posted_.pop_front();
        return work;
    }

    std::mutex lock_;
    std::chrono::milliseconds now_ { 0 };
    std::deque<Work> posted_;
    std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();
};

} // namespace pixelhain
