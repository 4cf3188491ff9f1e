#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// An ICO: the largest of its pictures, of equally large ones that with the most colours.
[[nodiscard]] std::unique_ptr<ImageSource> openIco(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
