#include "support/FakeLoop.h"

namespace pixelhain {

FakeLoop::FakeLoop() = default;
FakeLoop::~FakeLoop() = default;

void FakeLoop::post(Work work)
{
    std::scoped_lock const guard(lock_);
    posted_.push_back(std::move(work));
    posting_.notify_all();
}

std::size_t FakeLoop::pending()
{
    std::scoped_lock const guard(lock_);
    return posted_.size();
}

void FakeLoop::awaitPost()
{
    std::unique_lock guard(lock_);
    posting_.wait(guard, [this] { return !posted_.empty(); });
}

Task FakeLoop::after(std::chrono::milliseconds delay, Work work)
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

void FakeLoop::settle()
{
    while (auto work = next())
        work();
}

void FakeLoop::advance(std::chrono::milliseconds by)
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

FakeLoop::Work FakeLoop::next()
{
    std::scoped_lock const guard(lock_);
    if (posted_.empty())
        return nullptr;
    auto work = std::move(posted_.front());
    posted_.pop_front();
    return work;
}

} // namespace pixelhain
