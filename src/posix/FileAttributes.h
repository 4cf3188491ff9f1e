#pragma once
#include <sys/stat.h>

namespace pixelhain {

/// Gives one open file the owner, extended attributes (access control lists among them), mode and
/// dates of another, whose `status` was taken before it was read. What the file system or the
/// user's rights do not allow is left out; false only if something went wrong with what they do.
[[nodiscard]] bool copyAttributes(int from, struct stat const& status, int to);

} // namespace pixelhain
