#pragma once
#include "codecs/ByteView.h"
#include "codecs/PictureBuilder.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// Eighths of the full size that a JPEG is best decoded at to be brought to `maxPixel`, 1, 2, 4 or
/// 8: the fewest that still give 1.3 times as much, 1.5 times for 2 and 4, so that the filter has
/// enough to work with. 8 if none do, or if `maxPixel` is 0.
[[nodiscard]] int dctEighths(PixelSize size, int maxPixel);

/// What a picture of this size fills of the rows that it is decoded to at so many eighths.
[[nodiscard]] PictureBuilder::Extent extentAt(PixelSize size, int eighths);

/// Decodes the JPEG that begins at the start of `bytes` to at most `maxPixel` (0: its own size), in
/// sRGB, as stored. What a damaged file still gives is kept.
[[nodiscard]] std::optional<DecodedImage> decodeJpeg(
    ByteSource const& bytes, int maxPixel, ByteSpan profile);

/// The same by the JPEG library alone.
[[nodiscard]] std::optional<DecodedImage> decodeJpegByLibrary(
    ByteSource const& bytes, int maxPixel, ByteSpan profile);

/// Whether every pixel of the JPEG that is `bytes` decodes without a complaint.
[[nodiscard]] bool isSoundJpeg(ByteSpan bytes);

} // namespace pixelhain
