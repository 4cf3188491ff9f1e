#pragma once
#include "codecs/JpegHeader.h"
#include "ports/ImageSource.h"
#include <optional>
#include <vector>

namespace pixelhain {

/// A JPEG inside a file that shows the whole picture.
struct JpegPreview {
    ByteRange range;
    PixelSize stored; ///< as its own frame says
    int cropX = 0; ///< columns of black bars at each side
    int cropY = 0; ///< rows of black bars above and below

    [[nodiscard]] PixelSize shown() const
    {
        return { stored.width - 2 * cropX, stored.height - 2 * cropY };
    }
};

/// Whether a preview shows as much as the picture: its sides relate to each other like the
/// picture's, within 2 % or what rounding to whole pixels does to a small one.
[[nodiscard]] bool hasSameShape(PixelSize preview, PixelSize picture);

/// The previews of the picture that `traits` describe, by their longest side ascending.
[[nodiscard]] std::vector<JpegPreview> findJpegPreviews(
    ByteSource const& bytes, PhotoTraits const& traits);

/// `preview` as stored, without its bars, at most `maxPixel` on its longest side.
/// `mainProfile` counts when the preview has no profile of its own.
[[nodiscard]] std::optional<DecodedImage> decodeJpegPreview(ByteSource const& bytes,
    JpegPreview const& preview, int maxPixel, std::vector<std::uint8_t> const& mainProfile);

} // namespace pixelhain
