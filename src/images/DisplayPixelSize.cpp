#include "images/DisplayPixelSize.h"
#include <algorithm>

namespace pixelhain {

int displayPixelSizeFor(std::span<Screen const> screens)
{
    constexpr double smallest = 1024;
    // No codec knows longer sides; a platform that reports nonsense must not overflow an int.
    constexpr double largest = 65535;
    if (screens.empty())
        return defaultDisplayPixelSize;
    double longest = 0;
    for (auto const& screen : screens)
        longest = std::max(longest, screen.scale * std::max(screen.width, screen.height));
    return static_cast<int>(std::clamp(longest, smallest, largest));
}

} // namespace pixelhain
