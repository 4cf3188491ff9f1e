#include "posix/FolderHandle.h"
#include <climits>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>

namespace pixelhain {

namespace {

// Large enough that a big folder costs few calls; small ones touch only the pages they need.
constexpr std::size_t listingBuffer = 512 * 1024;

EntryKind kindOfEntry(unsigned char type)
{
    switch (type) {
    case DT_REG:
        return EntryKind::file;
    case DT_DIR:
        return EntryKind::folder;
    case DT_LNK:
        return EntryKind::link;
    case DT_UNKNOWN:
        return EntryKind::unknown;
    default:
        return EntryKind::other;
    }
}

bool isDotOrDotDot(std::string_view name)
{
    return name == "." || name == "..";
}

void visitBlock(std::byte const* buffer, std::size_t used, FileSystem::EntryVisitor const& visit)
{
    for (std::size_t at = 0; at < used;) {
        auto const* const entry = reinterpret_cast<dirent64 const*>(buffer + at);
        std::string_view const name = entry->d_name;
        if (!isDotOrDotDot(name))
            visit(name, kindOfEntry(entry->d_type));
        at += entry->d_reclen;
    }
}

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

void visitEntries(Descriptor const& folder, FileSystem::EntryVisitor const& visit)
{
    auto const buffer = std::make_unique_for_overwrite<std::byte[]>(listingBuffer);
    for (;;) {
        auto const used = uninterrupted(
            [&] { return ::getdents64(folder.get(), buffer.get(), listingBuffer); });
        if (used <= 0)
            return;
        visitBlock(buffer.get(), static_cast<std::size_t>(used), visit);
    }
}

} // namespace pixelhain
