#pragma once
#include "ports/WorkQueue.h"
#include <cstddef>

namespace pixelhain {

/// A queue that does its work while it is given.
class ImmediateQueue final : public WorkQueue {
public:
    void add(std::function<void()> item) override
    {
        ++count;
        item();
    }

    std::size_t count = 0; ///< items so far
};

} // namespace pixelhain
