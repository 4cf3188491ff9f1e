#pragma once
#include "codecs/ExifReader.h"
#include <vector>

namespace pixelhain {

/// What the markers in front of a JPEG's pixels say.
struct JpegHeader {
    PhotoTraits traits;
    std::vector<ByteRange> profileParts; ///< in their order
    std::optional<ByteRange> exif; ///< from its TIFF header on
    std::vector<ByteRange> exifBlocks; ///< all of them; `exif` is the one that counts
    std::vector<ByteRange> packets; ///< XMP
    std::uint8_t frame = 0; ///< the marker of the first frame: 0xC0 baseline, 0xC3 lossless, ...
    int precision = 0; ///< bits of a sample
};

/// Reads the markers at the beginning of `bytes`; nothing if no frame with both sides is found.
[[nodiscard]] std::optional<JpegHeader> readJpegHeader(ByteSource const& bytes);

/// The embedded colour profile; empty if there is none or a part of it is missing.
[[nodiscard]] std::vector<std::uint8_t> readJpegProfile(
    ByteSource const& bytes, JpegHeader const& header);

} // namespace pixelhain
