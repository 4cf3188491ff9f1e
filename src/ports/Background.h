#pragma once
#include "base/CancelFlag.h"
#include "base/Task.h"
#include "ports/MainLoop.h"
#include <functional>
#include <memory>
#include <utility>

namespace pixelhain {

enum class Priority { utility, userInitiated, userInteractive };

/// Work off the main thread. Pieces of work may run side by side and end in any order.
class Background {
public:
    virtual ~Background() = default;

    /// Runs `work` on some other thread. Callable from any thread.
    virtual void run(Priority priority, std::function<void()> work) = 0;
};

/// Runs `work` off the main thread and hands its result (moved) to `done` on it. Dropping the task
/// skips `work` if it has not begun, and `done` in any case; a result that nobody waits for any
/// more is freed where it was made. `background` and `loop` must outlive the work.
template <typename Work, typename Done>
[[nodiscard]] Task runThen(
    Background& background, MainLoop& loop, Priority priority, Work work, Done done)
{
    auto const flag = std::make_shared<CancelFlag>();
    background.run(
        priority, [&loop, flag, work = std::move(work), done = std::move(done)]() mutable {
            if (flag->isSet())
                return;
            auto result = std::make_shared<decltype(work())>(work());
            if (flag->isSet())
                return;
            loop.post([flag, result, done = std::move(done)]() mutable {
                if (!flag->isSet())
                    done(std::move(*result));
            });
        });
    return Task([flag] { flag->set(); });
}

} // namespace pixelhain
