#include "posix/FileAttributes.h"
#include "posix/FilePlace.h"
#include "posix/FolderHandle.h"
#include <cstring>
#include <string>
#include <sys/xattr.h>

namespace pixelhain {

namespace {

// Drives for cameras know no owners, modes and attributes, and some belong to nobody.
bool isDone(int result)
{
    if (result >= 0)
        return true;
    switch (errno) {
    case EPERM:
    case EACCES:
    case EOPNOTSUPP:
    case EINVAL:
    case ENOSYS:
    case ENOTTY:
        return true;
    default:
        return false;
    }
}

// Asks for the size first; what grows in between is asked for again.
template <typename Call> ssize_t readAll(std::string& into, Call call)
{
    for (;;) {
        auto const size = uninterrupted([&] { return call(nullptr, 0); });
        if (size <= 0)
            return size;
        into.resize(static_cast<std::size_t>(size));
        auto const got = uninterrupted([&] { return call(into.data(), into.size()); });
        if (got < 0 && errno == ERANGE)
            continue;
        if (got >= 0)
            into.resize(static_cast<std::size_t>(got));
        return got;
    }
}

bool copyExtendedAttribute(int from, int to, char const* name)
{
    std::string value;
    auto const got = readAll(
        value, [&](char* data, std::size_t size) { return ::fgetxattr(from, name, data, size); });
    if (got < 0)
        return errno == ENODATA || isDone(-1);
    if (got == 0)
        value.clear();
    return isDone(
        uninterrupted([&] { return ::fsetxattr(to, name, value.data(), value.size(), 0); }));
}

bool copyExtendedAttributes(int from, int to)
{
    std::string names;
    auto const got = readAll(
        names, [&](char* data, std::size_t size) { return ::flistxattr(from, data, size); });
    if (got <= 0)
        return got == 0 || isDone(-1);
    for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1)
        if (!copyExtendedAttribute(from, to, names.c_str() + at))
            return false;
    return true;
}

bool copyOwner(struct stat const& status, int to)
{
    if (uninterrupted([&] { return ::fchown(to, status.st_uid, status.st_gid); }) == 0)
        return true;
    return isDone(-1)
        && isDone(
            uninterrupted([&] { return ::fchown(to, static_cast<uid_t>(-1), status.st_gid); }));
}

// What runs with its owner's rights must not begin to run with another's.
mode_t modeFor(struct stat const& status, int to)
{
    struct stat own { };
    bool const sameOwner
        = statusOf(to, own) && own.st_uid == status.st_uid && own.st_gid == status.st_gid;
    return status.st_mode & (sameOwner ? 07777U : 0777U);
}

} // namespace

bool copyAttributes(int from, struct stat const& status, int to)
{
    timespec const times[] = { status.st_atim, status.st_mtim };
    return copyOwner(status, to) && copyExtendedAttributes(from, to)
        && isDone(uninterrupted([&] { return ::fchmod(to, modeFor(status, to)); }))
        && isDone(uninterrupted([&] { return ::futimens(to, times); }));
}

} // namespace pixelhain
