#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// Whether a file begins as a JPEG XL does, bare or in boxes.
[[nodiscard]] bool isJxl(ByteSpan start);

/// A JPEG XL. Of an animated one the first frame is the picture.
[[nodiscard]] std::unique_ptr<ImageSource> openJxl(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
