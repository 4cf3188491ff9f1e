#pragma once
#include "base/Task.h"
#include <chrono>
#include <functional>

namespace pixelhain {

/// The main thread's event loop.
class MainLoop {
public:
    using Work = std::function<void()>;
    virtual ~MainLoop() = default;

    /// Runs `work` on the main thread after everything posted before it. Callable from any thread.
    virtual void post(Work work) = 0;

    /// Runs `work` once, `delay` from now, unless the task is dropped first. Main thread only.
    [[nodiscard]] virtual Task after(std::chrono::milliseconds delay, Work work) = 0;
};

} // namespace pixelhain
