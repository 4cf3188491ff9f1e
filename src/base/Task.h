#pragma once
#include <functional>
#include <utility>

namespace pixelhain {

/// A piece of work that was promised to happen later. Dropping or replacing the handle cancels it;
/// cancelling after it ran does nothing.
class Task {
public:
    Task() = default;
    explicit Task(std::function<void()> cancel)
        : cancel_(std::move(cancel))
    {
    }
    Task(Task&& other) noexcept
        : cancel_(std::exchange(other.cancel_, nullptr))
    {
    }
    Task& operator=(Task&& other) noexcept
    {
        if (this != &other) {
            cancel();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    ~Task() { cancel(); }

    void cancel()
    {
        if (auto cancel = std::exchange(cancel_, nullptr))
            cancel();
    }

    /// Whether there is something to cancel; stays true after the work ran.
    explicit operator bool() const { return cancel_ != nullptr; }

private:
    std::function<void()> cancel_;
};

/// Ends an observation when it goes out of scope.
using Observation = Task;

} // namespace pixelhain
