#include "support/FakeBackground.h"

namespace pixelhain {

FakeBackground::FakeBackground() = default;
FakeBackground::~FakeBackground() = default;

void FakeBackground::run(Priority priority, std::function<void()> work)
{
    lastPriority = priority;
    pending_.push_back(std::move(work));
}

void FakeBackground::finish(std::size_t index)
{
    auto const work = std::move(pending_.at(index));
    pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(index));
    work();
}

void FakeBackground::finishAll()
{
    while (!pending_.empty())
        finish(0);
}

} // namespace pixelhain
