#pragma once
#include <cstdint>

namespace pixelhain {

/// Why a file could not be written.
enum class WriteProblem : std::uint8_t {
    noSpace, ///< on the drive, or of what this user may have of it
    notAllowed, ///< in this folder, or in place of this file
    readOnly, ///< the drive
    noFolder, ///< there is none of that name any more
    nameTooLong,
    notAFile, ///< something of the name is there that is no file
    taken, ///< a file of the name has appeared or changed in the meantime
    tooLarge, ///< for this file system
    other,
};

} // namespace pixelhain
