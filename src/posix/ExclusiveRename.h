#pragma once
#include "posix/FilePlace.h"
#include <cstdint>

namespace pixelhain {

/// How giving a file another name ended. In all cases but `done` nothing has changed.
enum class RenameResult : std::uint8_t {
    done,
    taken, ///< something lies at the new place
    otherDevice, ///< the new place is beyond what a rename can reach
    failed, ///< errno tells why
};

/// Gives a file another name, on the same file system, without ever replacing what lies there.
/// File systems that cannot do it in one step get a second name before they lose the first one, or,
/// without hard links, an empty file of that name which the rename then replaces.
[[nodiscard]] RenameResult renameExclusively(FilePlace const& from, FilePlace const& to);

} // namespace pixelhain
