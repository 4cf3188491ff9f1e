#pragma once
#include "base/CancelFlag.h"
#include "ports/FileOperations.h"
#include "posix/FilePlace.h"

namespace pixelhain {

/// Copies a file or a link, with dates, mode, owner and extended attributes as far as the target
/// takes them. Under the new name there is nothing or the whole copy, synced to the disk.
[[nodiscard]] FileOutcome copyFile(
    FilePlace const& from, FilePlace const& to, CancelFlag const& cancel);

/// Moves a file or a link by copying it; the source goes when the copy is safe on the disk. If the
/// source cannot be removed, the copy goes again.
[[nodiscard]] FileOutcome moveByCopying(
    FilePlace const& from, FilePlace const& to, CancelFlag const& cancel);

} // namespace pixelhain
