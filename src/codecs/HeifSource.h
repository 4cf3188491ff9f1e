#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// Whether a file that begins with `start` calls itself a HEIF or AVIF, foremost or besides.
[[nodiscard]] bool isHeif(ByteSpan start);

/// A HEIF or AVIF: its primary picture with its thumbnails. Of a sequence the still picture that
/// stands for it.
[[nodiscard]] std::unique_ptr<ImageSource> openHeif(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
