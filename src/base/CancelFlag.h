#pragma once
#include <mutex>

namespace pixelhain {

/// Says "no longer wanted" across threads; once set it stays set.
class CancelFlag {
public:
    void set()
    {
        std::scoped_lock const guard(lock_);
        value_ = true;
    }

    bool isSet() const
    {
        std::scoped_lock const guard(lock_);
        return value_;
    }

private:
    mutable std::mutex lock_;
    bool value_ = false;
};

} // namespace pixelhain
