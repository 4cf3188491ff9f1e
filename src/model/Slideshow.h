#pragma once
#include "base/Task.h"
#include <cstddef>
#include <vector>

namespace pixelhain {

/// Where a slideshow stands. Empty while none runs.
struct Slideshow {
    std::vector<std::size_t> order; ///< indices into the visible list, in the order they are shown
    std::size_t position = 0; ///< in `order`
    Task timer; ///< advances to the next photo; dropping it stops the clock
    bool enteredFullScreen = false; ///< the window goes back when the show ends
};

} // namespace pixelhain
