#include "posix/PosixFileOperations.h"
#include "posix/ExclusiveRename.h"
#include "posix/FileTransfer.h"
#include "posix/Trash.h"
#include <utility>

namespace pixelhain {

PosixFileOperations::PosixFileOperations(FileUrl homeTrash)
    : homeTrash_(std::move(homeTrash))
{
}

std::optional<FileUrl> PosixFileOperations::trash(FileUrl const& file)
{
    return moveToTrash(file, homeTrash_);
}

bool PosixFileOperations::restore(FileUrl const& trashed, FileUrl const& original)
{
    return moveFromTrash(trashed, original);
}

FileOutcome PosixFileOperations::move(
    FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
{
    FilePlace const from(file);
    FilePlace const to(destination);
    if (!from || !to)
        return FileOutcome::failed;
    switch (renameExclusively(from, to)) {
    case RenameResult::done:
        return FileOutcome::done;
    case RenameResult::taken:
        return FileOutcome::taken;
    case RenameResult::otherDevice:
        return moveByCopying(from, to, cancel);
    case RenameResult::failed:
        break;
    }
    return FileOutcome::failed;
}

FileOutcome PosixFileOperations::copy(
    FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
{
    FilePlace const from(file);
    FilePlace const to(destination);
    return from && to ? copyFile(from, to, cancel) : FileOutcome::failed;
}

} // namespace pixelhain
