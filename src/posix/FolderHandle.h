#pragma once
#include "ports/FileSystem.h"
#include "posix/Descriptor.h"
#include <cerrno>
#include <string_view>

namespace pixelhain {

/// Opens the folder at `path` with the flags of open(2) in addition to O_DIRECTORY and O_CLOEXEC;
/// links are followed. A path of any length works. Empty, with errno set, if that is not possible.
[[nodiscard]] Descriptor openFolder(std::string_view path, int flags);

/// Calls `visit` for each entry of an opened folder but "." and "..", in the order in which the
/// file system yields them; an error in the middle ends the listing with what was seen.
void visitEntries(Descriptor const& folder, FileSystem::EntryVisitor const& visit);

/// Repeats a system call that a signal interrupts.
template <typename Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace pixelhain
