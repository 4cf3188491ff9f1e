#pragma once
#include "base/Bitmap.h"
#include <cstdint>
#include <vector>

namespace pixelhain {

/// `bitmap` as a JPEG of high quality. What is transparent shows a grey of this value, 0 to 255.
/// Empty if there is no memory, or if the picture is larger than the format allows.
[[nodiscard]] std::vector<std::uint8_t> jpegOf(Bitmap const& bitmap, int background);

} // namespace pixelhain
