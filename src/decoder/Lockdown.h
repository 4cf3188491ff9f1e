#pragma once
#include "decoder/WorkerLimits.h"
#include <cstdint>
#include <string>
#include <sys/types.h>

namespace pixelhain {

/// What holds a process that has been locked down. Plain data, so that a worker can tell its
/// parent.
struct Lockdown {
    enum Hold : std::uint32_t {
        parentDeath = 1U << 0U, ///< dies with the thread that started it
        firstVictim = 1U << 1U, ///< the kernel's choice when memory runs out
        resources = 1U << 2U, ///< limits of memory, descriptors, file sizes, processor time
        opaque = 1U << 3U, ///< no core dump, and not to be traced by others
        noNewPrivileges = 1U << 4U,
        paths = 1U << 5U, ///< Landlock
        systemCalls = 1U << 6U, ///< seccomp
    };
    static constexpr std::uint32_t everything = (1U << 7U) - 1;

    std::uint32_t holds = 0;
    int landlock = 0; ///< version of its interface; 0: not there

    [[nodiscard]] bool has(Hold hold) const { return (holds & hold) != 0; }
    [[nodiscard]] bool isComplete() const { return (holds & everything) == everything; }
};

/// The kernel's names of what is not in force, such as "Landlock, seccomp"; empty if all is.
[[nodiscard]] std::string missingHolds(Lockdown const& lockdown);

/// Has the calling process end with the thread that started it, for good. False if that thread's
/// process is not `parent`: it ended before this was called, and there is nobody to work for.
[[nodiscard]] bool bindToParent(pid_t parent);

/// Takes everything from the calling process that decoding does not need, for good: what remains
/// are its memory, its threads, and the descriptors that are open or come in by the socket. What
/// the kernel cannot do is left out and told. Must run before there is a second thread, after
/// whatever opens files or libraries, with standard output and errors away from regular files: a
/// write to one would end the process.
[[nodiscard]] Lockdown lockDown(WorkerLimits const& limits);

} // namespace pixelhain
