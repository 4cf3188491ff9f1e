#include "posix/FolderHandle.h"
#include <climits>
#include <fcntl.h>
#include <string>

namespace pixelhain {

namespace {

Descriptor openAt(int base, std::string const& path, int flags)
{
    return Descriptor(uninterrupted(
        [&] { return ::openat(base, path.c_str(), flags | O_DIRECTORY | O_CLOEXEC); }));
}

} // namespace

// The kernel takes no path of PATH_MAX bytes or more, but folders can lie deeper. Such a path is
// walked in pieces, each relative to the folder before it.
Descriptor openFolder(std::string_view path, int flags)
{
    Descriptor base;
    while (path.size() >= PATH_MAX) {
        auto const slash = path.rfind('/', PATH_MAX - 2);
        if (slash == std::string_view::npos || slash == 0) {
            errno = ENAMETOOLONG;
            return {};
        }
        base = openAt(base ? base.get() : AT_FDCWD, std::string(path.substr(0, slash)), O_PATH);
        if (!base)
            return {};
        path.remove_prefix(slash + 1);
    }
    return openAt(base ? base.get() : AT_FDCWD, std::string(path), flags);
}

} // namespace pixelhain
