#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A GIF. Its picture is the first frame, on the transparent canvas.
[[nodiscard]] std::unique_ptr<ImageSource> openGif(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
