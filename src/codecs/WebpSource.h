#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A WebP, lossy or lossless. Of an animated one the first frame on its canvas is the picture.
[[nodiscard]] std::unique_ptr<ImageSource> openWebp(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
