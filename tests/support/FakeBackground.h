#pragma once
#include "ports/Background.h"
#include <cstddef>
#include <mutex>
#include <vector>

namespace pixelhain {

/// Background work that waits until a test says which piece runs. Thread-safe.
class FakeBackground final : public Background {
public:
    FakeBackground();
    ~FakeBackground() override;

    void run(Priority priority, std::function<void()> work) override;

    std::size_t pending() const
    {
        std::scoped_lock const guard(lock_);
        return pending_.size();
    }

    /// Runs the piece at `index` of those still pending.
    void finish(std::size_t index);

    void finishAll();

    Priority lastPriority = Priority::utility;

private:
    mutable std::mutex lock_;
    std::vector<std::function<void()>> pending_;
};

} // namespace pixelhain
