#pragma once
#include <chrono>
#include <optional>

namespace pixelhain {

/// Decides which events of a stream are told at once and which are gathered: the first after a
/// quiet time, a second, at once, those that follow within that time together at its end.
class EventBatches {
public:
    using Time = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds second { 1000 };

    explicit EventBatches(std::chrono::milliseconds gathering = second)
        : gathering_(gathering)
    {
    }

    /// Something happened. True: tell now.
    [[nodiscard]] bool event(Time now)
    {
        if (now < openUntil_) {
            waiting_ = true;
            return false;
        }
        waiting_ = false;
        openUntil_ = now + gathering_;
        return true;
    }

    /// When what was gathered is due; nothing while there is none.
    [[nodiscard]] std::optional<Time> due() const
    {
        return waiting_ ? std::optional(openUntil_) : std::nullopt;
    }

    /// Time passed. True: tell now what was gathered.
    [[nodiscard]] bool expire(Time now) { return waiting_ && now >= openUntil_ && event(now); }

private:
    std::chrono::milliseconds gathering_;
    Time openUntil_ = Time::min();
    bool waiting_ = false;
};

} // namespace pixelhain
