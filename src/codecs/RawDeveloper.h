#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// A RAW picture developed from the sensor's data.
struct DevelopedRaw {
    DecodedImage image; ///< as stored, in sRGB
    bool isCut = false; ///< a part of the data is missing
};

/// The size that `bytes` are developed to, as stored; nothing if it is not known. Slow, compared
/// with reading directories.
[[nodiscard]] std::optional<PixelSize> developedSize(ByteSource const& bytes);

/// Develops the sensor's data of `bytes` with the camera's white balance, to at most `maxPixel` on
/// its longest side (0: every pixel). Half the sensor's size is developed where that is enough, or
/// where the whole would need too much memory. Nothing if the camera is not known, the file is
/// broken or its time is over.
[[nodiscard]] std::optional<DevelopedRaw> developRaw(ByteSource const& bytes, int maxPixel);

} // namespace pixelhain
