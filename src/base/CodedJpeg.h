#pragma once
#include "base/Geometry.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace pixelhain {

/// A picture as the bytes of a JPEG that every reader takes: 8 bits, grey or YCbCr in sRGB,
/// upright, baseline or progressive, and nothing beside the picture. Empty: none.
struct CodedJpeg {
    PixelSize size;
    std::shared_ptr<std::vector<std::uint8_t> const> bytes;
    explicit operator bool() const { return bytes != nullptr; }
};

} // namespace pixelhain
