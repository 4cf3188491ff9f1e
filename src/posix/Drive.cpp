#include "posix/Drive.h"
#include "posix/FolderHandle.h"
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace pixelhain {

namespace {

struct FolderId {
    Drive drive;
    std::uint64_t inode = 0;

    friend bool operator==(FolderId const&, FolderId const&) = default;
};

std::optional<FolderId> idOf(int folder)
{
    struct statx answer { };
    int const flags = AT_EMPTY_PATH | AT_NO_AUTOMOUNT;
    if (uninterrupted([&] { return ::statx(folder, "", flags, STATX_INO | STATX_MNT_ID, &answer); })
        != 0)
        return std::nullopt;
    FolderId id;
    id.drive.device = ::makedev(answer.stx_dev_major, answer.stx_dev_minor);
    id.drive.mount = (answer.stx_mask & STATX_MNT_ID) != 0 ? answer.stx_mnt_id : 0;
    id.inode = answer.stx_ino;
    return id;
}

// Where the kernel says that a folder lies, free of links.
std::optional<std::string> realPath(int folder)
{
    char path[PATH_MAX];
    auto const self = "/proc/self/fd/" + std::to_string(folder);
    auto const length = ::readlink(self.c_str(), path, sizeof path);
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path || path[0] != '/')
        return std::nullopt;
    return std::string(path, static_cast<std::size_t>(length));
}

// Cuts the last `count` components off.
std::optional<std::string_view> withoutLast(std::string_view path, std::size_t count)
{
    for (; count > 0; --count) {
        auto const slash = path.rfind('/');
        if (slash == std::string_view::npos || path.size() == 1)
            return std::nullopt;
        path = path.substr(0, slash == 0 ? 1 : slash);
    }
    return path;
}

struct Ascent {
    Descriptor folder;
    FolderId id;
    std::size_t steps = 0;
};

std::optional<Ascent> climb(int start)
{
    auto const upFrom = [](Descriptor const& folder) {
        return Descriptor(uninterrupted(
            [&] { return ::openat(folder.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    };
    auto const id = idOf(start);
    Ascent top { Descriptor(::fcntl(start, F_DUPFD_CLOEXEC, 0)), {}, 0 };
    if (!id || !top.folder)
        return std::nullopt;
    top.id = *id;
    for (;;) {
        auto up = upFrom(top.folder);
        auto const upId = idOf(up.get());
        if (!upId)
            return std::nullopt;
        if (upId->drive != top.id.drive || *upId == top.id)
            return top;
        top.folder = std::move(up);
        top.id = *upId;
        ++top.steps;
    }
}

// If `path`, which leads to the folder, also leads to its drive's top after as many steps up.
std::optional<DriveTop> topAlong(std::string_view path, Ascent const& top)
{
    auto const upper = withoutLast(path, top.steps);
    if (!upper)
        return std::nullopt;
    auto folder = openFolder(*upper, O_PATH);
    if (idOf(folder.get()) != std::optional(top.id))
        return std::nullopt;
    auto way = path.substr(upper->size());
    if (way.starts_with('/'))
        way.remove_prefix(1);
    return DriveTop { std::move(folder), FileUrl(*upper), std::string(way) };
}

} // namespace

std::optional<Drive> driveOf(int folder)
{
    auto const id = idOf(folder);
    return id ? std::optional(id->drive) : std::nullopt;
}

std::optional<DriveTop> topOf(int folder, FileUrl const& url)
{
    auto const top = climb(folder);
    if (!top)
        return std::nullopt;
    // Links on the way are no part of the drive; very long paths the kernel does not tell.
    if (auto const real = realPath(folder))
        if (auto found = topAlong(*real, *top))
            return found;
    return topAlong(url.standardized().path(), *top);
}

} // namespace pixelhain
