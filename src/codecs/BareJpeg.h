#pragma once
#include "base/Geometry.h"
#include "ports/ByteSource.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// A JPEG that holds its picture and nothing else.
struct BareJpeg {
    PixelSize size;
    bool isGrey = false; ///< else YCbCr
    std::vector<std::uint8_t> bytes;
};

/// The most that a bare JPEG may take that stands for a picture of `maxPixel`: so many of them fit
/// on a page that it stays small, and the rest is worth coding anew.
[[nodiscard]] std::size_t mostBareBytes(int maxPixel);

/// The JPEG at the beginning of `bytes` with what its pixels need and nothing else: no metadata, no
/// preview, no comment, nothing that follows its end. Its tables and coded pixels stay as they are.
/// Nothing unless its longest side is at most `maxPixel`, and it is of 8 bits, grey or YCbCr,
/// baseline or progressive in Huffman codes, well-formed from its beginning to its end, and small
/// enough. Whether the coded pixels are damaged is not seen here.
///
/// Reads little more than what is kept.
[[nodiscard]] std::optional<BareJpeg> bareJpeg(ByteSource const& bytes, int maxPixel);

} // namespace pixelhain
