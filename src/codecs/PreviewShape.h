#pragma once
#include "base/Bitmap.h"
#include "base/Geometry.h"
#include <optional>

namespace pixelhain {

/// Black bars that fill a preview up to another shape than the picture has.
struct PreviewBars {
    int x = 0; ///< columns at each side
    int y = 0; ///< rows above and below
    bool operator==(PreviewBars const&) const = default;
};

/// `stored` without its bars.
[[nodiscard]] constexpr PixelSize withoutBars(PixelSize stored, PreviewBars bars)
{
    return { stored.width - 2 * bars.x, stored.height - 2 * bars.y };
}

/// Whether a preview of this size can show the whole picture: its sides are in the picture's
/// proportion within 2 %, or within what rounding to whole pixels does to a small preview.
[[nodiscard]] bool hasSameShape(PixelSize preview, PixelSize picture);

/// The largest size of `shape`'s proportion that fits into `frame`; empty if either is.
[[nodiscard]] PixelSize largestOfShape(PixelSize shape, PixelSize frame);

/// The bars that would give a small preview the picture's shape; nothing if none would.
[[nodiscard]] std::optional<PreviewBars> possibleBars(PixelSize preview, PixelSize picture);

/// Whether `preview` is nearly black where the bars lie.
[[nodiscard]] bool areBarsBlack(Bitmap const& preview, PreviewBars bars);

/// `preview` without its bars; empty if there is no memory for it.
[[nodiscard]] Bitmap croppedBars(Bitmap const& preview, PreviewBars bars);

} // namespace pixelhain
