#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A BMP: 1 to 32 bits a pixel, with palette, run lengths or bit fields, of any header since OS/2.
[[nodiscard]] std::unique_ptr<ImageSource> openBmp(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
