#include "posix/FilePlace.h"
#include "posix/FolderHandle.h"
#include <fcntl.h>

namespace pixelhain {

FilePlace::FilePlace(FileUrl const& url)
{
    auto const name = url.name();
    if (name.empty() || name == "/" || name == "." || name == ".." || url.path().front() != '/')
        return;
    name_ = name;
    folder_ = openFolder(url.parent().path(), O_PATH);
}

bool FilePlace::status(struct stat& status) const
{
    return uninterrupted([&] {
        return ::fstatat(folder(), name(), &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT);
    }) == 0;
}

bool FilePlace::unlink() const
{
    return uninterrupted([&] { return ::unlinkat(folder(), name(), 0); }) == 0;
}

bool FilePlace::isStill(struct stat const& file) const
{
    struct stat now { };
    return status(now) && isSameFile(now, file);
}

bool FilePlace::unlinkIfStill(struct stat const& file) const
{
    return isStill(file) && unlink();
}

bool statusOf(int file, struct stat& status)
{
    return uninterrupted([&] { return ::fstat(file, &status); }) == 0;
}

bool isSameFile(struct stat const& a, struct stat const& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino
        && (a.st_mode & S_IFMT) == (b.st_mode & S_IFMT);
}

bool isUnchanged(struct stat const& before, struct stat const& after)
{
    return isSameFile(before, after) && before.st_size == after.st_size
        && before.st_mtim.tv_sec == after.st_mtim.tv_sec
        && before.st_mtim.tv_nsec == after.st_mtim.tv_nsec;
}

} // namespace pixelhain
