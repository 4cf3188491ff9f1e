#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A PNG of any depth and colour type, interlaced or not. Of an animated one the default image is
/// the picture.
[[nodiscard]] std::unique_ptr<ImageSource> openPng(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
