#pragma once

namespace pixelhain {

/// From here on the kernel answers only those calls of this process, all its threads included,
/// that decoding needs; most others fail as if the kernel did not know them, and the few that serve
/// nothing but a break-out end the process (SIGSYS). Cannot be undone. False, and nothing is
/// changed, where the kernel cannot do it or the machine is neither x86-64 nor arm64.
///
/// Needs no_new_privs, and must be called in the process that is to be held, not before a fork.
[[nodiscard]] bool filterSyscalls();

} // namespace pixelhain
