#include "decoder/Lockdown.h"
#include "decoder/Landlock.h"
#include "decoder/SyscallFilter.h"
#include "posix/Descriptor.h"
#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <malloc.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace pixelhain {

namespace {

// Sanitizers reserve terabytes of addresses for their own books.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool hasShadowMemory = true;
#elif defined(__has_feature)
constexpr bool hasShadowMemory = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    || __has_feature(memory_sanitizer);
#else
constexpr bool hasShadowMemory = false;
#endif

bool beFirstVictim()
{
    constexpr std::string_view most = "1000";
    Descriptor const file(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    return file && ::write(file.get(), most.data(), most.size()) == ssize_t(most.size());
}

bool limit(__rlimit_resource resource, std::uint64_t most)
{
    rlimit now {};
    if (::getrlimit(resource, &now) != 0)
        return false;
    auto const value = std::min<rlim_t>(now.rlim_max, most);
    rlimit const wanted { value, value };
    return ::setrlimit(resource, &wanted) == 0;
}

bool limitResources(WorkerLimits const& limits)
{
    // Every further arena of the C library reserves 64 MiB of the address space.
    ::mallopt(M_ARENA_MAX, 2);
    auto const seconds = static_cast<std::uint64_t>(WorkerLimits::processorTime.count());
    bool isHeld = limit(RLIMIT_CORE, 0);
    isHeld &= limit(RLIMIT_NOFILE, WorkerLimits::openFiles);
    isHeld &= limit(RLIMIT_FSIZE, 0);
    isHeld &= limit(RLIMIT_MEMLOCK, 0);
    isHeld &= limit(RLIMIT_MSGQUEUE, 0);
    isHeld &= limit(RLIMIT_CPU, seconds);
    isHeld &= hasShadowMemory || limit(RLIMIT_AS, limits.addressSpace);
    return isHeld;
}

} // namespace

std::string missingHolds(Lockdown const& lockdown)
{
    constexpr std::array<std::string_view, 7> names { "PR_SET_PDEATHSIG", "oom_score_adj",
        "setrlimit", "PR_SET_DUMPABLE", "no_new_privs", "Landlock", "seccomp" };
    std::string missing;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if ((lockdown.holds & 1U << i) != 0)
            continue;
        if (!missing.empty())
            missing += ", ";
        missing += names[i];
    }
    return missing;
}

bool bindToParent(pid_t parent)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    return ::getppid() == parent;
}

Lockdown lockDown(WorkerLimits const& limits)
{
    Lockdown lockdown;
    auto const note = [&lockdown](Lockdown::Hold hold, bool isHeld) {
        if (isHeld)
            lockdown.holds |= hold;
    };
    note(Lockdown::parentDeath, ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0);
    note(Lockdown::firstVictim, beFirstVictim());
    note(Lockdown::resources, limitResources(limits));
    note(Lockdown::opaque, ::prctl(PR_SET_DUMPABLE, 0) == 0);
    note(Lockdown::noNewPrivileges, ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0);
    lockdown.landlock = forbidPaths();
    note(Lockdown::paths, lockdown.landlock > 0);
    note(Lockdown::systemCalls, filterSyscalls());
    return lockdown;
}

} // namespace pixelhain
