#pragma once
#include "base/CodedJpeg.h"
#include "codecs/JpegHeader.h"
#include "codecs/PreviewShape.h"
#include "ports/ImageSource.h"
#include <optional>
#include <vector>

namespace pixelhain {

/// A JPEG inside a file that shows the whole picture.
struct JpegPreview {
    ByteRange range;
    PixelSize stored; ///< as its own frame says
    PreviewBars bars;

    [[nodiscard]] PixelSize shown() const { return withoutBars(stored, bars); }
};

/// The previews of the picture that `traits` describe, by their longest side ascending.
[[nodiscard]] std::vector<JpegPreview> findJpegPreviews(
    ByteSource const& bytes, PhotoTraits const& traits);

/// `preview` as stored, without its bars, at most `maxPixel` on its longest side.
/// `mainProfile` counts when the preview has no profile of its own.
[[nodiscard]] std::optional<DecodedImage> decodeJpegPreview(ByteSource const& bytes,
    JpegPreview const& preview, int maxPixel, std::vector<std::uint8_t> const& mainProfile);

/// The JPEG at the beginning of `bytes` without anything beside its picture, if decoding it to
/// `maxPixel` would neither reduce nor recolour it and it is not damaged. `mainProfile` counts when
/// it has no profile of its own.
[[nodiscard]] CodedJpeg passableJpeg(
    ByteSource const& bytes, int maxPixel, std::vector<std::uint8_t> const& mainProfile);

} // namespace pixelhain
