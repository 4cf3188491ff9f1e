#pragma once
#include "ports/Screens.h"
#include <span>

namespace pixelhain {

/// What display images are decoded to before the screens are known, or where there is none.
inline constexpr int defaultDisplayPixelSize = 2880;

/// The longest side of the largest screen in device pixels, 1024 at least.
[[nodiscard]] int displayPixelSizeFor(std::span<Screen const> screens);

} // namespace pixelhain
