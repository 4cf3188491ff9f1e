#pragma once
#include <chrono>
#include <optional>

namespace pixelhain {

/// Decides which events of a stream are told at once and which are gathered: the first after a
/// quiet second at once, those that follow within a second together at its end.
class EventBatches {
public:
    using Time = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds gathering { 1000 };

    /// Something happened. True: tell now.
    [[nodiscard]] bool event(Time now)
    {
        if (openUntil_ && now < *openUntil_) {
            waiting_ = true;
            return false;
        }
        waiting_ = false;
        openUntil_ = now + gathering;
        return true;
    }

    /// When what was gathered is due; nothing while there is none.
    [[nodiscard]] std::optional<Time> due() const { return waiting_ ? openUntil_ : std::nullopt; }

    /// Time passed. True: tell now what was gathered.
    [[nodiscard]] bool expire(Time now) { return waiting_ && now >= *openUntil_ && event(now); }

private:
    std::optional<Time> openUntil_;
    bool waiting_ = false;
};

} // namespace pixelhain
