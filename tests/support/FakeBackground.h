#pragma once
#include "ports/Background.h"
#include <cstddef>
#include <vector>

namespace pixelhain {

/// Background work that waits until a test says which piece runs.
class FakeBackground final : public Background {
public:
    void run(Priority priority, std::function<void()> work) override
    {
        lastPriority = priority;
        pending_.push_back(std::move(work));
    }

    std::size_t pending() const { return pending_.size(); }

    /// Runs the piece at `index` of those still pending.
    void finish(std::size_t index)
    {
        auto const work = std::move(pending_.at(index));
        pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(index));
        work();
    }

    void finishAll()
    {
        while (!pending_.empty())
            finish(0);
    }

    Priority lastPriority = Priority::utility;

private:
    std::vector<std::function<void()>> pending_;
};

} // namespace pixelhain
