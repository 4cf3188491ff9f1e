#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A portable anymap: bitmap, greymap or pixmap as text or binary (P1 to P6), or PAM (P7), with up
/// to 16 bits a sample.
[[nodiscard]] std::unique_ptr<ImageSource> openPnm(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
