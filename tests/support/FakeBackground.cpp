#include "support/FakeBackground.h"

namespace pixelhain {

FakeBackground::FakeBackground() = default;
FakeBackground::~FakeBackground() = default;

void FakeBackground::run(Priority priority, std::function<void()> work)
{
    std::scoped_lock const guard(lock_);
    lastPriority = priority;
    pending_.push_back(std::move(work));
}

void FakeBackground::finish(std::size_t index)
{
    std::function<void()> work;
    {
        std::scoped_lock const guard(lock_);
        work = std::move(pending_.at(index));
        pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(index));
    }
    work();
}

void FakeBackground::finishAll()
{
    while (pending() > 0)
        finish(0);
}

} // namespace pixelhain
