#pragma once
#include "base/CancelFlag.h"
#include "base/FileUrl.h"
#include <cstdint>
#include <optional>

namespace pixelhain {

/// How moving or copying one file ended. In all cases but `done` the file is where it was, and
/// nothing lies at the destination that was not there before.
enum class FileOutcome : std::uint8_t {
    done,
    taken, ///< something lies at the destination already; another name may be free
    cancelled, ///< while a long copy was under way
    failed,
};

/// Changes of the user's files. Nothing is ever deleted or overwritten, not even in a race with
/// other programs. Thread-safe; every call may wait for a disk.
class FileOperations {
public:
    virtual ~FileOperations() = default;

    /// Moves a file to the trash and tells where it lies now; nothing if no trash can be had: the
    /// file is then still where it was.
    [[nodiscard]] virtual std::optional<FileUrl> trash(FileUrl const& file) = 0;

    /// Moves a file from its place in the trash back to where it was before. Takes no other name
    /// if something lies there by now: false, and the file stays in the trash. So does a file that
    /// came from elsewhere and took the place after the trash had been emptied.
    [[nodiscard]] virtual bool restore(FileUrl const& trashed, FileUrl const& original) = 0;

    /// Moves a file to exactly `destination`. `cancel` is looked at while bytes are copied.
    [[nodiscard]] virtual FileOutcome move(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
        = 0;

    /// Copies a file to exactly `destination`, with its times, mode and extended attributes.
    [[nodiscard]] virtual FileOutcome copy(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
        = 0;
};

} // namespace pixelhain
