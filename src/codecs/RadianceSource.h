#pragma once
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>

namespace pixelhain {

/// A Radiance picture (.hdr, RGBE), tone-mapped.
[[nodiscard]] std::unique_ptr<ImageSource> openRadiance(std::unique_ptr<ByteSource> bytes);

} // namespace pixelhain
