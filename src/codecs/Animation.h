#pragma once
#include "ports/AnimationSource.h"
#include "ports/ByteSource.h"
#include <memory>

namespace pixelhain {

/// Opens the animation in `bytes`, its frames with a longest side of at most `maxPixel` (0: as they
/// are). Null if the first bytes are of no format that has them, or of a still PNG or WebP; a GIF
/// of one image is an animation of one frame.
[[nodiscard]] std::unique_ptr<AnimationSource> openAnimation(
    std::unique_ptr<ByteSource> bytes, int maxPixel);

/// How long a frame is shown that is stated to be shown for `stated`: files from times when no
/// program could draw faster say 0 or 10 ms, and nobody ever saw them at that speed.
[[nodiscard]] std::chrono::microseconds shownDelay(std::chrono::microseconds stated);

} // namespace pixelhain
