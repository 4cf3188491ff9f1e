#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A JPEG: baseline, progressive or arithmetic, grey, YCbCr, RGB, CMYK or YCCK, with the previews
/// that cameras store beside the picture.
[[nodiscard]] std::unique_ptr<ImageSource> openJpeg(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
