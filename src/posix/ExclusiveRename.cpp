#include "posix/ExclusiveRename.h"
#include "posix/FolderHandle.h"
#include <cstdio>
#include <fcntl.h>

namespace pixelhain {

namespace {

RenameResult resultOf(int error)
{
    errno = error;
    switch (error) {
    case EEXIST:
        return RenameResult::taken;
    case EXDEV:
        return RenameResult::otherDevice;
    default:
        return RenameResult::failed;
    }
}

bool isStillEmptyClaim(Descriptor const& claim, FilePlace const& to)
{
    struct stat own { };
    struct stat there { };
    return statusOf(claim.get(), own) && own.st_size == 0 && to.status(there)
        && isSameFile(own, there);
}

RenameResult renameOntoClaim(FilePlace const& from, FilePlace const& to)
{
    constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW;
    Descriptor const claim(
        uninterrupted([&] { return ::openat(to.folder(), to.name(), flags, 0600); }));
    if (!claim)
        return resultOf(errno);
    // Others may have taken the empty file for theirs.
    if (!isStillEmptyClaim(claim, to))
        return resultOf(EEXIST);
    if (uninterrupted(
            [&] { return ::renameat(from.folder(), from.name(), to.folder(), to.name()); })
        == 0)
        return RenameResult::done;
    int const error = errno;
    if (isStillEmptyClaim(claim, to))
        static_cast<void>(to.unlink());
    return resultOf(error == EEXIST ? EIO : error);
}

// Somebody else may move or remove the file meanwhile; the second name goes only if the file has
// another one left.
RenameResult loseFirstName(FilePlace const& from, FilePlace const& to, struct stat const& file)
{
    if (from.unlinkIfStill(file))
        return RenameResult::done;
    int const error = errno;
    struct stat now { };
    bool const hasOther = to.status(now) && isSameFile(now, file) && now.st_nlink > 1;
    if (!hasOther)
        return RenameResult::done;
    static_cast<void>(to.unlink());
    return resultOf(error == EEXIST || error == EXDEV ? EIO : error);
}

RenameResult linkAndUnlink(FilePlace const& from, FilePlace const& to)
{
    struct stat file { };
    if (!from.status(file))
        return RenameResult::failed;
    if (uninterrupted(
            [&] { return ::linkat(from.folder(), from.name(), to.folder(), to.name(), 0); })
        != 0) {
        switch (errno) {
        case EEXIST:
        case EXDEV:
        case ENOENT:
        case ENOSPC:
        case EDQUOT:
        case EIO:
        case EROFS:
            return resultOf(errno);
        default: // no hard links here, or not for this file
            return renameOntoClaim(from, to);
        }
    }
    return loseFirstName(from, to, file);
}

} // namespace

RenameResult renameExclusively(FilePlace const& from, FilePlace const& to)
{
    if (uninterrupted([&] {
            return ::renameat2(
                from.folder(), from.name(), to.folder(), to.name(), RENAME_NOREPLACE);
        })
        == 0)
        return RenameResult::done;
    if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)
        return linkAndUnlink(from, to);
    return resultOf(errno);
}

} // namespace pixelhain
