#pragma once
#include "codecs/PreviewShape.h"
#include "codecs/RawContents.h"
#include "ports/ImageSource.h"
#include <optional>
#include <vector>

namespace pixelhain {

/// A finished picture inside a RAW file.
struct RawPreview {
    enum class Kind : std::uint8_t { jpeg, plain };
    Kind kind = Kind::jpeg;
    ByteRange range;
    PixelSize stored; ///< as its own frame says
    PreviewBars bars;
    int orientation = 1; ///< what turns it upright
    RawColors colors = RawColors::unknown;
    bool isWhole = false; ///< shows all of the picture, and nothing else but bars

    [[nodiscard]] PixelSize shown() const { return withoutBars(stored, bars); }
    [[nodiscard]] PixelSize upright() const;
};

/// The pictures inside a RAW file that can be decoded, by their longest side ascending. `picture`
/// is the sensor's size as stored; where it is empty, every one of them counts as whole.
[[nodiscard]] std::vector<RawPreview> findRawPreviews(
    ByteSource const& bytes, RawContents const& contents, PixelSize picture);

/// `preview` upright, in sRGB, at most `maxPixel` on its longest side (0: its own size).
[[nodiscard]] std::optional<DecodedImage> decodeRawPreview(
    ByteSource const& bytes, RawPreview const& preview, int maxPixel);

} // namespace pixelhain
