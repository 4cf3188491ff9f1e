#pragma once
#include "base/Task.h"
#include <cstddef>
#include <vector>

namespace pixelhain {

/// Where a slideshow stands. While one runs, `order` holds something and `position` lies in it.
struct Slideshow {
    std::vector<std::size_t> order {}; ///< indices into the visible list, in showing order
    std::size_t position = 0; ///< in `order`, of the photo shown
    Task timer {}; ///< advances to the next photo; dropping it stops the clock
    Task awake {}; ///< keeps the screen on
    bool enteredFullScreen = false; ///< the window goes back when the show ends
};

} // namespace pixelhain
