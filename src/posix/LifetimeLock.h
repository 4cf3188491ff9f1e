#pragma once
#include "posix/Descriptor.h"
#include <string>

namespace pixelhain {

/// A mark that a process keeps for as long as it lives, however it ends; one at a time.
class LifetimeLock {
public:
    enum class State { mine, others, unknown };

    /// Makes the file if needed. Does not wait. Unknown where no such file can be.
    explicit LifetimeLock(std::string const& file);

    State state() const { return state_; }

private:
    Descriptor file_;
    State state_ = State::unknown;
};

} // namespace pixelhain
