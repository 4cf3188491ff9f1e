#pragma once
#include "base/Bitmap.h"
#include "ports/ImageDecoder.h"
#include "ports/ImageSource.h"
#include <optional>
#include <string_view>

namespace pixelhain {

/// How long the longest side of a preview must be to stand for a picture of `maxPixel`: three
/// quarters, rounded down.
[[nodiscard]] int previewThreshold(int maxPixel);

/// Whether a preview of this size may stand for the picture: it reaches the threshold, or the
/// picture, where its size is known, is longer by two pixels at most.
[[nodiscard]] bool acceptsPreview(
    PixelSize preview, int maxPixel, std::optional<PixelSize> const& picture);

/// Reduces the picture of `source` to a longest side of `maxPixel`, upright and in sRGB. Where
/// previews are preferred, the smallest that is accepted and not damaged is taken. Where nothing
/// else will do, it is that or the largest below it, unless it has many more pixels than are
/// wanted. The picture is read whole, as stored, only if it cannot be had reduced.
[[nodiscard]] std::optional<DecodedPicture> decodeImage(
    ImageSource& source, int maxPixel, EmbeddedPreviews previews);

/// What decodeImage() would take, as the JPEG that it is in the file; nothing if it must be
/// decoded.
[[nodiscard]] std::optional<DecodedPicture> passedJpeg(
    ImageSource& source, int maxPixel, EmbeddedPreviews previews);

/// The picture of `source` with every pixel; nothing if the file does not state both sides.
[[nodiscard]] std::optional<DecodedPicture> decodeFullImage(ImageSource& source);

/// The upright size of the picture, and whether the file is an animation. Frames are counted in the
/// formats that can be animated only.
[[nodiscard]] ImageMeta readMeta(ImageSource& source);

/// A first look: the metadata, and the smallest of the previews unless it would be accepted for a
/// picture of `maxPixel`, which is made as fast then.
[[nodiscard]] Glance glanceAt(ImageSource& source, int maxPixel);

/// Whether files of this uniform type identifier can be animations.
[[nodiscard]] bool isAnimatedType(std::string_view typeIdentifier);

/// Whether a picture may not be handed on as it was decoded. `isScaledRead`: the codec was asked to
/// bring it to `maxPixel`.
[[nodiscard]] bool mustRedraw(DecodedImage const& image, int maxPixel, bool isScaledRead);

/// `size` reduced to a longest side of `maxPixel`, never enlarged, each side 1 at least.
[[nodiscard]] PixelSize redrawnSize(PixelSize size, int maxPixel);

/// `bitmap` brought to redrawnSize(); itself if it has that size; empty if there is no memory.
[[nodiscard]] Bitmap redrawScaled(Bitmap const& bitmap, int maxPixel);

} // namespace pixelhain
