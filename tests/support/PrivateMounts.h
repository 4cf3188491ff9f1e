#pragma once
#include "base/FileUrl.h"
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <thread>

namespace pixelhain {

/// Runs `work` on a thread whose mounts nobody else sees, and which go away with it. False if this
/// user may not mount; `work` has not run then.
template <typename Work> [[nodiscard]] bool withPrivateMounts(Work work)
{
    bool allowed = false;
    std::exception_ptr problem;
    std::thread([&] {
        if (::unshare(CLONE_NEWNS) != 0
            || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return;
        allowed = true;
        try {
            work();
        } catch (...) {
            problem = std::current_exception();
        }
    }).join();
    if (problem)
        std::rethrow_exception(problem);
    return allowed;
}

/// An empty file system in memory at `folder`, which is made. `options` as of mount(8), such as
/// "size=4m".
inline bool mountMemory(FileUrl const& folder, char const* options = "size=64m")
{
    std::filesystem::create_directories(folder.cString());
    return ::mount("none", folder.cString(), "tmpfs", 0, options) == 0;
}

/// An empty file system in the file `image`, as the command `mkfs` makes it, mounted at `folder`,
/// which is made. False if the kernel or this machine has no such file system.
inline bool mountImage(
    FileUrl const& folder, FileUrl const& image, std::string const& mkfs, std::string const& size)
{
    std::filesystem::create_directories(folder.cString());
    std::string const file(image.path());
    auto const command = "PATH=$PATH:/usr/sbin:/sbin; { truncate -s " + size + " '" + file + "' && "
        + mkfs + " '" + file + "' && mount -o loop '" + file + "' '" + folder.cString()
        + "'; } >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

/// The folder `what` once more at `folder`, which is made.
inline bool mountAgain(FileUrl const& what, FileUrl const& folder)
{
    std::filesystem::create_directories(folder.cString());
    return ::mount(what.cString(), folder.cString(), nullptr, MS_BIND, nullptr) == 0;
}

/// From now on nothing on the file system at `folder` can be changed.
inline bool mountReadOnly(FileUrl const& folder)
{
    return ::mount("none", folder.cString(), nullptr, MS_REMOUNT | MS_RDONLY | MS_BIND, nullptr)
        == 0;
}

} // namespace pixelhain
