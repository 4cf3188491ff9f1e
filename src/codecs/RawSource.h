#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// Opens a camera's RAW file; null if it is none, or if its directories cannot be read. Its type
/// identifier is "com.adobe.raw-image" for a DNG and "public.camera-raw-image" for every maker's
/// own format. The picture is a finished one from inside the file where that is large enough, else
/// it is developed from the sensor's data, and if that fails too, whatever finished one there is.
[[nodiscard]] std::unique_ptr<ImageSource> openRaw(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
