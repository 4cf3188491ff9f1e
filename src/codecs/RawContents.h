#pragma once
#include "base/Geometry.h"
#include "codecs/ByteView.h"
#include "codecs/ExifReader.h"
#include "ports/ByteSource.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// The colours that a camera's pictures were rendered in, where no profile says it.
enum class RawColors : std::uint8_t { unknown, srgb, adobeRgb };

/// A picture stored as plain rows of R, G, B with 8 bits each.
struct PlainPicture {
    std::uint64_t offset = 0;
    PixelSize size;
    bool operator==(PlainPicture const&) const = default;
};

/// What a camera's RAW file says before any pixel is decoded.
struct RawContents {
    PixelSize size; ///< of the sensor's picture, as stored; empty if the file does not say
    /// The part in its middle that the camera may have been set to; empty if none is stated. It is
    /// the picture if the finished ones show it, too.
    PixelSize crop;
    int orientation = 1;
    RawColors colors = RawColors::unknown;
    bool isDng = false;
    std::vector<ByteRange> jpegs; ///< where previews may lie: nothing there is checked
    std::vector<PlainPicture> plains;
    std::vector<ByteRange> exif; ///< EXIF blocks, in kinds that are no TIFF themselves
    ByteRange camera; ///< its make and its model, a NUL behind each, in kinds without EXIF
};

/// Whether a file that begins with `start`, 16 bytes at least, is a RAW file in a maker's own
/// packing.
[[nodiscard]] bool isMakersRaw(ByteSpan start);

/// Whether `bytes`, a TIFF by their first four bytes, are a camera's RAW file and not a picture, by
/// what their first directories say.
[[nodiscard]] bool isTiffRaw(ByteSource const& bytes);

/// Reads the directories of a RAW file; nothing if its header is beyond use.
[[nodiscard]] std::optional<RawContents> readRawContents(ByteSource const& bytes);

} // namespace pixelhain
