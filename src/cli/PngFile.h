#pragma once
#include "base/Bitmap.h"
#include "base/Failure.h"
#include "base/FileUrl.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// `bitmap` as the bytes of a PNG: RGB where it is opaque, else RGBA. Empty if there is no memory.
[[nodiscard]] std::vector<std::uint8_t> pngOf(Bitmap const& bitmap);

/// Writes `bitmap` to a new file. What is there already is never replaced, and a file that could
/// not be written whole is taken away again.
[[nodiscard]] std::optional<Failure> writePng(Bitmap const& bitmap, FileUrl const& url);

} // namespace pixelhain
