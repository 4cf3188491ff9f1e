#pragma once

namespace pixelhain {

/// Whether the kernel sees every change in the opened folder: not so on network and FUSE file
/// systems, where others change things that this machine is never told of. True if unknown.
[[nodiscard]] bool reportsEveryChange(int folder);

} // namespace pixelhain
