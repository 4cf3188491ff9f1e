#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// The JPEG at the beginning of `bytes` by the means of its blocks alone, at most `maxPixel`, in
/// sRGB, as stored: what the JPEG library makes of it at an eighth of its size, without the time
/// that it spends on what is not shown, and without reading a progressive one to its end.
///
/// Nothing if an eighth is too small or too large for `maxPixel`, and for JPEGs of the less usual
/// kinds and for damaged ones, unless all that is wrong with them is a missing end: the library
/// knows what to do about them.
[[nodiscard]] std::optional<DecodedImage> reduceJpeg(
    ByteSource const& bytes, int maxPixel, ByteSpan profile);

} // namespace pixelhain
