#pragma once
#include "base/CancelFlag.h"
#include <cstdint>

namespace pixelhain {

/// How copying bytes ended; whatever was written by then stays.
enum class ContentsResult : std::uint8_t { done, cancelled, failed };

/// Copies the first `size` bytes of one open file into another, empty one. Where the file system
/// can share them, nothing is read. `cancel` is looked at every few megabytes. The bytes are on
/// their way to the disk, but not synced. A file that ends early is a failure.
[[nodiscard]] ContentsResult copyContents(
    int from, int to, std::uint64_t size, CancelFlag const& cancel);

} // namespace pixelhain
