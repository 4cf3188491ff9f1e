#include "cli/ConsoleLoop.h"
#include <utility>

namespace pixelhain {

void ConsoleLoop::post(Work work)
{
    {
        std::scoped_lock const guard(lock_);
        work_.push_back(std::move(work));
    }
    posted_.notify_one();
}

Task ConsoleLoop::after(std::chrono::milliseconds delay, Work work)
{
    auto const alive = std::make_shared<Work>(std::move(work));
    timers_->emplace(Clock::now() + delay, alive);
    return Task([timers = std::weak_ptr(timers_), timer = std::weak_ptr(alive)] {
        auto const list = timers.lock();
        auto const mine = timer.lock();
        if (list && mine)
            std::erase_if(*list, [&](auto const& entry) { return entry.second == mine; });
    });
}

void ConsoleLoop::runUntil(std::function<bool()> const& isDone)
{
    while (!isDone())
        next()();
}

// The next piece of work, as soon as there is one.
MainLoop::Work ConsoleLoop::next()
{
    std::unique_lock guard(lock_);
    auto const isPosted = [this] { return !work_.empty(); };
    if (timers_->empty())
        posted_.wait(guard, isPosted);
    else if (!posted_.wait_until(guard, timers_->begin()->first, isPosted)) {
        auto const due = timers_->extract(timers_->begin());
        return std::move(*due.mapped());
    }
    auto work = std::move(work_.front());
    work_.pop_front();
    return work;
}

} // namespace pixelhain
