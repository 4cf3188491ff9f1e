#pragma once
#include "codecs/ByteView.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// Whether a file that begins with these bytes may be a TGA. The format has no mark: all fields of
/// its header must agree with each other, and other formats are to be asked first.
[[nodiscard]] bool looksLikeTga(ByteSpan start);

/// A TGA: palette, grey or colour, plain or with run lengths.
[[nodiscard]] std::unique_ptr<ImageSource> openTga(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
