#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// Whether a file that begins with these bytes is a JPEG 2000: boxes or the bare codestream.
[[nodiscard]] bool isJp2(ByteSpan start);

/// A JPEG 2000 picture. Reduced ones are read at a coarser resolution of the file.
[[nodiscard]] std::unique_ptr<ImageSource> openJp2(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
