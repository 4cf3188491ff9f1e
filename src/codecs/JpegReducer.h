#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// The JPEG at the beginning of `bytes` at an eighth of its size, brought to at most `maxPixel`, in
/// sRGB, as stored, without the time that the JPEG library spends on what is not shown. A
/// sequential one gives the library's very samples. Of a progressive one no more is read than the
/// means of its blocks; where chroma has half of luma's size, the library shows twice as much of
/// it.
///
/// Nothing if an eighth is too small or too large for `maxPixel`, and for JPEGs of the less usual
/// kinds and for damaged ones, unless all that is wrong with them is a missing end: the library
/// knows what to do about them. It then reads what was read here a second time.
[[nodiscard]] std::optional<DecodedImage> reduceJpeg(
    ByteSource const& bytes, int maxPixel, ByteSpan profile);

} // namespace pixelhain
