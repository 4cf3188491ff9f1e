#pragma once
#include "ports/WorkQueue.h"
#include <cstddef>
#include <deque>
#include <utility>

namespace pixelhain {

/// A queue whose items wait until a test starts them.
class FakeWorkQueue final : public WorkQueue {
public:
    void add(std::function<void()> item) override { items_.push_back(std::move(item)); }

    std::size_t pending() const { return items_.size(); }

    /// Runs the item that was added first.
    void runNext()
    {
        auto const item = std::move(items_.front());
        items_.pop_front();
        item();
    }

    void runAll()
    {
        while (!items_.empty())
            runNext();
    }

private:
    std::deque<std::function<void()>> items_;
};

} // namespace pixelhain
