#pragma once
#include "base/Bitmap.h"
#include "base/Geometry.h"

namespace pixelhain {

/// Whether EXIF orientation `orientation` swaps width and height (5 to 8).
[[nodiscard]] constexpr bool isQuarterTurn(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

/// `stored` as it is shown under `orientation`.
[[nodiscard]] constexpr PixelSize uprightSize(PixelSize stored, int orientation)
{
    return isQuarterTurn(orientation) ? stored.turned() : stored;
}

/// `stored` turned and mirrored so that it stands upright; itself for 1 and for anything outside 1
/// to 8; empty if there is no memory for it.
[[nodiscard]] Bitmap upright(Bitmap stored, int orientation);

} // namespace pixelhain
