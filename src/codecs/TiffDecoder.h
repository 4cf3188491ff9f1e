#pragma once
#include "codecs/TiffFile.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// Decodes the page that `file` stands at to at most `maxPixel` (0: its own size), in sRGB, as
/// stored. Strips or tiles are reduced as they are read. Of a damaged file the rows up to the
/// damage are kept.
[[nodiscard]] std::optional<DecodedImage> decodeTiff(
    TiffFile const& file, PixelSize size, int maxPixel, ByteSpan profile);

} // namespace pixelhain
