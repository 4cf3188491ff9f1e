#pragma once
#include "base/FileUrl.h"
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace pixelhain {

/// Makes folders inside each other below `top` until the path of the last one has at least `length`
/// bytes, which may be more than any system call takes, and an empty file `name` in it.
inline FileUrl makeDeepFile(FileUrl const& top, std::size_t length, char const* name)
{
    std::string path(top.path());
    int folder = ::open(path.c_str(), O_PATH | O_DIRECTORY);
    std::string const part(200, 'd');
    while (path.size() < length) {
        ::mkdirat(folder, part.c_str(), 0755);
        int const inner = ::openat(folder, part.c_str(), O_PATH | O_DIRECTORY);
        ::close(folder);
        folder = inner;
        path += "/" + part;
    }
    int const file = ::openat(folder, name, O_CREAT | O_WRONLY, 0644);
    ::close(folder);
    if (file < 0)
        throw std::runtime_error("cannot make a deep folder");
    ::close(file);
    return FileUrl(path).child(name);
}

} // namespace pixelhain
