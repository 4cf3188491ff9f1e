#pragma once

namespace pixelhain {

/// From here on this process may touch no file by its path, open no port, reach no socket without
/// a name in the file system and signal nobody outside, as far as the kernel's Landlock can forbid
/// it. What is open already stays usable. Cannot be undone.
///
/// Returns the version of the interface that is in force; 0, and nothing is changed, where the
/// kernel has none. Needs no_new_privs.
[[nodiscard]] int forbidPaths();

} // namespace pixelhain
