#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A QOI picture, with or without alpha, its colours sRGB or linear.
[[nodiscard]] std::unique_ptr<ImageSource> openQoi(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
