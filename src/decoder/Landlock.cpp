#include "decoder/Landlock.h"
#include "posix/Descriptor.h"
#include <cstdint>
#include <sys/syscall.h>
#include <unistd.h>

namespace pixelhain {

namespace {

// The kernel's own struct, spelt out because the headers of an older one lack the newer members.
// Kernels that do not know a member accept it as long as it is 0.
struct Rights {
    std::uint64_t files = 0;
    std::uint64_t ports = 0;
    std::uint64_t scopes = 0;
};

constexpr std::uint64_t firstBits(int count)
{
    return (std::uint64_t { 1 } << unsigned(count)) - 1;
}

// Every right that a version of the interface knows: what is handled and has no rule is forbidden.
constexpr Rights rightsOf(int version)
{
    Rights rights { firstBits(13) };
    if (version >= 2)
        rights.files = firstBits(14); // links and renames across folders
    if (version >= 3)
        rights.files = firstBits(15); // truncation
    if (version >= 4)
        rights.ports = firstBits(2); // bind and connect
    if (version >= 5)
        rights.files = firstBits(16); // commands to devices
    if (version >= 6)
        rights.scopes = firstBits(2); // abstract sockets and signals
    return rights;
}

} // namespace

int forbidPaths()
{
    constexpr std::uint32_t askVersion = 1;
    auto const version = static_cast<int>(
        ::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t { 0 }, askVersion));
    if (version < 1)
        return 0;
    auto const rights = rightsOf(version);
    Descriptor const rules(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rights, sizeof rights, 0U)));
    if (!rules || ::syscall(SYS_landlock_restrict_self, rules.get(), 0U) != 0)
        return 0;
    return version;
}

} // namespace pixelhain
