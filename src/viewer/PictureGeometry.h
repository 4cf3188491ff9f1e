#pragma once
#include "base/Geometry.h"
#include <optional>

namespace pixelhain {

/// How large a picture is shown and where: `scale` times its fitted size, `offset` points away from
/// the middle of the area.
struct Zoom {
    double scale = 1;
    Point offset;
    bool operator==(Zoom const&) const = default;
};

/// The area that a picture is shown in.
struct PictureArea {
    PixelSize pixels; ///< device pixels
    double displayScale = 1; ///< device pixels per point
    bool operator==(PictureArea const&) const = default;
};

/// The size at which `picture` fills the area, its proportions kept; also enlarged. Whole device
/// pixels, at least 1 a side; empty if either has no pixels.
[[nodiscard]] PixelSize fittedInto(PixelSize area, PixelSize picture);

/// Where the picture lies in the area, in whole device pixels: magnified around the area's middle,
/// then moved. It may reach beyond the area or lie outside it.
[[nodiscard]] PixelRect picturePlace(PictureArea const& area, PixelSize picture, Zoom const& zoom);

/// The scale at which one of the picture's pixels is one device pixel.
[[nodiscard]] double pixelScale(PictureArea const& area, PixelSize picture);

/// The size that a zoomed picture is measured by: that of the photo, as long as what is shown of it
/// has the same proportions but for rounding; else what is shown counts. At scale 1 what is shown
/// counts in any case, so that a picture prepared for the area fits to the pixel.
[[nodiscard]] PixelSize measuredSize(
    PixelSize shown, std::optional<PixelSize> const& photo, double scale);

} // namespace pixelhain
