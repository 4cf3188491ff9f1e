#pragma once
#include <chrono>

namespace pixelhain {

/// How the viewer comes to the photo that `viewerIndex` now says.
enum class ViewerTransition {
    none, ///< at once
    crossFade, ///< the old photo becomes the new one within `crossFadeTime`, eased in and out
};

inline constexpr std::chrono::milliseconds crossFadeTime { 700 };

} // namespace pixelhain
