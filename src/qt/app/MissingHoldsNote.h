#pragma once
#include <mutex>
#include <string>
#include <utility>

namespace pixelhain {

/// What the kernel lacks to lock up the processes that decode; told by one of their threads at any
/// time. Thread-safe.
class MissingHoldsNote {
public:
    void write(std::string missing)
    {
        std::scoped_lock const guard(lock_);
        missing_ = std::move(missing);
    }
    std::string text() const
    {
        std::scoped_lock const guard(lock_);
        return missing_;
    }

private:
    mutable std::mutex lock_;
    std::string missing_;
};

} // namespace pixelhain
