#pragma once
#include "base/FileUrl.h"
#include <optional>

namespace pixelhain {

/// Moves a file or a link to the user's trash on the same drive: the home trash at `home`, else the
/// drive's own. Tells where it lies now; nothing if that cannot be done, the file is then in place.
///
/// Nothing is waited for: after a loss of power the file lies in either place, and at worst the
/// trash has forgotten where it came from.
[[nodiscard]] std::optional<FileUrl> moveToTrash(FileUrl const& file, FileUrl const& home);

/// Moves a file from its place in a trash to `original`, where nothing may lie, and makes the trash
/// forget about it. What the trash says came from elsewhere stays.
[[nodiscard]] bool moveFromTrash(FileUrl const& trashed, FileUrl const& original);

} // namespace pixelhain
