#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// An OpenEXR picture, of several parts the first; tone-mapped.
[[nodiscard]] std::unique_ptr<ImageSource> openExr(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
