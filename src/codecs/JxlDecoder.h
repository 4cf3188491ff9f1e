#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

enum class JxlPicture : std::uint8_t { first, preview };

/// Decodes the first frame of the JPEG XL `bytes`, or the preview in front of it, as stored, in
/// sRGB, to at most `maxPixel` (0: its own size). Of a file that is cut what is there is kept.
[[nodiscard]] std::optional<DecodedImage> decodeJxl(
    ByteSource const& bytes, JxlPicture picture, int maxPixel);

} // namespace pixelhain
