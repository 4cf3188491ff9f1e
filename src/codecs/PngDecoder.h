#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// Decodes the default image of a PNG to at most `maxPixel` (0: its own size), in sRGB, as stored.
/// Rows are reduced as they are read, so a picture that is not interlaced is never held whole.
/// What a damaged file still gives is kept.
[[nodiscard]] std::optional<DecodedImage> decodePng(ByteSource const& bytes, int maxPixel);

/// The picture as large as it is; nothing if any of it is missing or damaged.
[[nodiscard]] std::optional<DecodedImage> decodeCompletePng(ByteSource const& bytes);

} // namespace pixelhain
