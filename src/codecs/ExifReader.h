#pragma once
#include "base/Geometry.h"
#include "ports/ByteSource.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// A stretch of bytes in a file.
struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    bool operator==(ByteRange const&) const = default;
};

/// What decoding must know of an EXIF block.
struct ExifSummary {
    int orientation = 1; ///< 1 to 8; 1 when absent or out of range
    std::optional<ByteRange> thumbnail; ///< a JPEG; as offset in the source that was read
    std::optional<ByteRange> makerPreview; ///< a larger JPEG that a maker note points at
    bool operator==(ExifSummary const&) const = default;
};

/// Reads the block whose TIFF header stands at `base` of `bytes`, over at most `length` bytes;
/// thumbnails that do not lie within are left out. All defaults if it cannot be read.
[[nodiscard]] ExifSummary readExif(
    ByteSource const& bytes, std::uint64_t base, std::uint64_t length);

/// One picture of a multi-picture file.
struct MultiPicture {
    enum class Kind : std::uint8_t { primary, preview, view, other };
    Kind kind = Kind::other;
    ByteRange range; ///< in the file
};

/// What every kind of file states about its picture, as far as decoding goes.
struct PhotoTraits {
    PixelSize size; ///< as stored
    ExifSummary exif;
    std::vector<MultiPicture> pictures; ///< of the multi-picture index
};

/// The index in an MPF block whose TIFF header stands at `base` of the file; the first entry is the
/// file's own picture.
[[nodiscard]] std::vector<MultiPicture> readMultiPictureIndex(
    ByteSource const& bytes, std::uint64_t base);

} // namespace pixelhain
