#pragma once
#include "ports/Background.h"
#include <cstddef>
#include <vector>

namespace pixelhain {

/// Background work that waits until a test says which piece runs.
class FakeBackground final : public Background {
public:
    FakeBackground();
    ~FakeBackground() override;

    void run(Priority priority, std::function<void()> work) override;

    std::size_t pending() const { return pending_.size(); }

    /// Runs the piece at `index` of those still pending.
    void finish(std::size_t index);

    void finishAll();

    Priority lastPriority = Priority::utility;

private:
    std::vector<std::function<void()>> pending_;
};

} // namespace pixelhain
