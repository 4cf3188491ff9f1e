#pragma once
#include "base/Task.h"
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pixelhain {

/// Tells observers, once per turn of the main loop, that published fields changed. Observers never
/// see the middle of an operation. Main thread only.
class Observable {
public:
    /// `later` runs a piece of work after the current turn of the main loop.
    explicit Observable(std::function<void(std::function<void()>)> later)
        : later_(std::move(later))
    {
    }
    Observable(Observable const&) = delete;
    Observable& operator=(Observable const&) = delete;

    /// Calls `changed` after each turn in which a field changed, until the observation is dropped.
    [[nodiscard]] Observation observe(std::function<void()> changed)
    {
        auto observer = std::make_shared<std::function<void()>>(std::move(changed));
        observers_.push_back(observer);
        return Observation([observer]() mutable { observer.reset(); });
    }

    void fieldChanged()
    {
        if (std::exchange(notifying_, true))
            return;
        later_([this, alive = std::weak_ptr(alive_)] {
            if (!alive.expired())
                notify();
        });
    }

protected:
    ~Observable() = default;

private:
    void notify()
    {
        notifying_ = false;
        std::erase_if(observers_, [](auto const& observer) { return observer.expired(); });
        auto const current = observers_;
        for (auto const& weak : current)
            if (auto const observer = weak.lock())
                (*observer)();
    }

    std::function<void(std::function<void()>)> later_;
    std::vector<std::weak_ptr<std::function<void()>>> observers_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
    bool notifying_ = false;
};

/// A field that everyone may read like a plain value, only its owner may write, and whose changes
/// notify the owner's observers.
template <typename T, typename Owner> class Published {
public:
    explicit Published(Observable& owner, T value = {})
        : owner_(owner)
        , value_(std::move(value))
    {
    }
    Published(Published const&) = delete;

    T const& get() const { return value_; }
    operator T const&() const { return value_; }
    T const* operator->() const { return &value_; }
    T const& operator*() const { return value_; }

private:
    friend Owner;

    Published& operator=(T value)
    {
        if (!(value_ == value)) {
            value_ = std::move(value);
            owner_.fieldChanged();
        }
        return *this;
    }

    /// Replaces the value without comparing, for long lists that are known to differ. Returns the
    /// old one, which may take long to free.
    T replace(T value)
    {
        owner_.fieldChanged();
        return std::exchange(value_, std::move(value));
    }

    /// The value, to be changed in place: for what is too large to be copied.
    T& edit()
    {
        owner_.fieldChanged();
        return value_;
    }

    Observable& owner_;
    T value_;
};

/// Remembers a value and says whether it differs from the last one seen.
template <typename T> class LastSeen {
public:
    bool changed(T const& value)
    {
        if (value_ && *value_ == value)
            return false;
        value_ = value;
        return true;
    }

private:
    std::optional<T> value_;
};

} // namespace pixelhain
