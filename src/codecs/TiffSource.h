#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A TIFF. Its first page is the picture.
[[nodiscard]] std::unique_ptr<ImageSource> openTiff(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
