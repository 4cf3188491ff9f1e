#pragma once
#include <functional>

namespace pixelhain {

/// A queue that runs its items on threads of its own, started in the order they were added, at most
/// a fixed number side by side. Items are never removed; a cancelled one finds that out itself.
class WorkQueue {
public:
    virtual ~WorkQueue() = default;

    /// Callable from any thread.
    virtual void add(std::function<void()> item) = 0;
};

} // namespace pixelhain
