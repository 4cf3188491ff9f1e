#include "support/Attacks.h"
#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <linux/sched.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace pixelhain {

namespace {

template <typename Argument> long raw(Argument argument)
{
    if constexpr (std::is_pointer_v<Argument>)
        return reinterpret_cast<long>(argument);
    else
        return static_cast<long>(argument);
}

// Straight to the kernel, past whatever the C library would do first.
template <typename... Arguments> int attempt(long number, Arguments... arguments)
{
    errno = 0;
    return ::syscall(number, raw(arguments)...) < 0 ? errno : 0;
}

// As attempt(), for calls that return in a second process as well.
template <typename... Arguments> int attemptFork(long number, Arguments... arguments)
{
    errno = 0;
    auto const result = ::syscall(number, raw(arguments)...);
    if (result == 0)
        ::_exit(0);
    return result < 0 ? errno : 0;
}

constexpr char const* none = nullptr;
constexpr char const* file = "/etc/passwd";

// Pages that the kernel may write its answers to.
char* scratch()
{
    static std::array<char, 65536> pages {};
    return pages.data();
}

sockaddr_in loopback()
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int mapping(int protection)
{
    auto* const at = ::mmap(nullptr, 4096, protection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return at == MAP_FAILED ? errno : 0;
}

int makeExecutable()
{
    auto* const at
        = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return attempt(SYS_mprotect, at, 4096, PROT_READ | PROT_EXEC);
}

int raiseLimit()
{
    rlimit const more { RLIM_INFINITY, RLIM_INFINITY };
    return attempt(SYS_prlimit64, 0, RLIMIT_FSIZE, &more, none);
}

int touchForeignLimits(Loot const& loot)
{
    return attempt(SYS_prlimit64, loot.parent, RLIMIT_FSIZE, none, scratch());
}

int writeForeignMemory(Loot const& loot)
{
    iovec local { scratch(), 1 };
    iovec remote { scratch(), 1 };
    return attempt(SYS_process_vm_writev, loot.parent, &local, 1, &remote, 1, 0);
}

int sendByName(Loot const& loot)
{
    auto const address = loopback();
    return attempt(SYS_sendto, loot.socket, "x", 1, 0, &address, sizeof address);
}

int setTimes(Loot const& loot)
{
    return attempt(SYS_utimensat, loot.file, none, none, 0);
}

int cloneProcess(unsigned long flags)
{
    return attemptFork(SYS_clone, flags | SIGCHLD, none, none, none, none);
}

int cloneByStruct()
{
    struct {
        std::uint64_t flags, pidfd, child, parent, signal, stack, size, tls;
    } arguments {};
    arguments.signal = SIGCHLD;
    return attemptFork(SYS_clone3, &arguments, sizeof arguments);
}

#if defined(__x86_64__)
int callAs32Bit()
{
    constexpr int getpid32 = 20;
    int result = getpid32;
    asm volatile("int $0x80" : "+a"(result) : : "memory");
    return result < 0 ? -result : 0;
}

int callAsX32()
{
    constexpr long x32 = 0x40000000;
    return attempt(x32 | SYS_getpid);
}
#endif

template <long number> int plain(Loot const&)
{
    return attempt(number, 0, 0, 0, 0, 0, 0);
}

constexpr Attack everywhere[] = {
    // Files by their path.
    Attack { "openat", EACCES, true,
        [](Loot const&) { return attempt(SYS_openat, AT_FDCWD, file, O_RDONLY); } },
    Attack { "openat of itself", EACCES, true,
        [](Loot const&) { return attempt(SYS_openat, AT_FDCWD, "/proc/self/mem", O_RDWR); } },
    Attack { "openat2", EACCES, false, plain<SYS_openat2> },
    Attack { "newfstatat", EACCES, true,
        [](Loot const&) { return attempt(SYS_newfstatat, AT_FDCWD, file, scratch(), 0); } },
    Attack { "statx", EACCES, true,
        [](Loot const&) { return attempt(SYS_statx, AT_FDCWD, file, 0, 0x7FF, scratch()); } },
    Attack { "faccessat", EACCES, true,
        [](Loot const&) { return attempt(SYS_faccessat, AT_FDCWD, file, R_OK); } },
    Attack { "readlinkat", EACCES, true,
        [](Loot const&) {
            return attempt(SYS_readlinkat, AT_FDCWD, "/proc/self/exe", scratch(), 4096);
        } },
    Attack {
        "getcwd", EACCES, true, [](Loot const&) { return attempt(SYS_getcwd, scratch(), 4096); } },
    Attack { "unlinkat", ENOSYS, false,
        [](Loot const&) {
            return attempt(SYS_unlinkat, AT_FDCWD, "/tmp/pixelhain-no-such-file", 0);
        } },
    Attack { "renameat2", ENOSYS, false, plain<SYS_renameat2> },
    Attack { "linkat", ENOSYS, false, plain<SYS_linkat> },
    Attack { "mkdirat", ENOSYS, false, plain<SYS_mkdirat> },
    Attack { "truncate", ENOSYS, false, plain<SYS_truncate> },
    Attack { "open_by_handle_at", Attack::deadly, false, plain<SYS_open_by_handle_at> },
    Attack { "chroot", Attack::deadly, false, plain<SYS_chroot> },
    Attack { "mount", Attack::deadly, false, plain<SYS_mount> },
    // The photo that was handed over.
    Attack { "fchmod", ENOSYS, true,
        [](Loot const& loot) { return attempt(SYS_fchmod, loot.file, 0600); } },
    Attack { "utimensat", ENOSYS, true, setTimes },
    Attack { "fsetxattr", ENOSYS, false,
        [](Loot const& loot) { return attempt(SYS_fsetxattr, loot.file, "user.a", "b", 1, 0); } },
    Attack { "ftruncate", ENOSYS, false,
        [](Loot const& loot) { return attempt(SYS_ftruncate, loot.file, 0); } },
    Attack {
        "flock", ENOSYS, true, [](Loot const& loot) { return attempt(SYS_flock, loot.file, 2); } },
    Attack { "fcntl", EPERM, true,
        [](Loot const& loot) { return attempt(SYS_fcntl, loot.file, F_DUPFD, 0); } },
    Attack { "dup", ENOSYS, true, [](Loot const& loot) { return attempt(SYS_dup, loot.file); } },
    Attack { "ioctl", ENOTTY, true,
        [](Loot const& loot) { return attempt(SYS_ioctl, loot.file, 0x5451 /* FIOCLEX */, 0); } },
    // The world outside the machine and the sockets of others.
    Attack { "socket", EACCES, true,
        [](Loot const&) { return attempt(SYS_socket, AF_UNIX, SOCK_STREAM, 0); } },
    Attack { "socket to the network", EACCES, true,
        [](Loot const&) { return attempt(SYS_socket, AF_INET, SOCK_DGRAM, 0); } },
    Attack { "socketpair", EACCES, true,
        [](Loot const&) { return attempt(SYS_socketpair, AF_UNIX, SOCK_STREAM, 0, scratch()); } },
    Attack { "connect", Attack::deadly, false, plain<SYS_connect> },
    Attack { "bind", Attack::deadly, false, plain<SYS_bind> },
    Attack { "listen", Attack::deadly, false, plain<SYS_listen> },
    Attack { "accept4", Attack::deadly, false, plain<SYS_accept4> },
    Attack { "sendto", ENOSYS, false, sendByName },
    Attack { "write to the socket", EPERM, true,
        [](Loot const& loot) { return attempt(SYS_write, loot.socket, "x", 1); } },
    Attack { "writev to the socket", EPERM, true,
        [](Loot const& loot) {
            iovec part { scratch(), 1 };
            return attempt(SYS_writev, loot.socket, &part, 1);
        } },
    Attack { "setsockopt", ENOSYS, false, plain<SYS_setsockopt> },
    // Other processes.
    Attack {
        "clone of a process", Attack::deadly, true, [](Loot const&) { return cloneProcess(0); } },
    Attack { "clone into a namespace", Attack::deadly, false,
        [](Loot const&) { return cloneProcess(CLONE_NEWUSER); } },
    Attack { "clone of half a thread", Attack::deadly, false,
        [](Loot const&) {
            return attempt(SYS_clone, CLONE_VM | CLONE_SIGHAND | CLONE_THREAD | CLONE_NEWNS, none,
                none, none, none);
        } },
    Attack { "clone3", ENOSYS, true, [](Loot const&) { return cloneByStruct(); } },
    Attack { "execve", Attack::deadly, false,
        [](Loot const&) {
            std::array<char const*, 2> const words { "/bin/true", nullptr };
            return attempt(SYS_execve, words[0], words.data(), none);
        } },
    Attack { "execveat", Attack::deadly, false, plain<SYS_execveat> },
    Attack { "ptrace", Attack::deadly, true,
        [](Loot const&) { return attempt(SYS_ptrace, PTRACE_TRACEME, 0, none, none); } },
    Attack { "ptrace of the parent", Attack::deadly, false,
        [](Loot const& loot) {
            return attempt(SYS_ptrace, PTRACE_SEIZE, loot.parent, none, none);
        } },
    Attack { "process_vm_readv", Attack::deadly, false,
        [](Loot const& loot) {
            iovec part { scratch(), 1 };
            return attempt(SYS_process_vm_readv, loot.parent, &part, 1, &part, 1, 0);
        } },
    Attack { "process_vm_writev", Attack::deadly, false, writeForeignMemory },
    Attack { "kill", Attack::deadly, true,
        [](Loot const& loot) { return attempt(SYS_kill, loot.parent, 0); } },
    Attack { "tkill", Attack::deadly, true,
        [](Loot const& loot) { return attempt(SYS_tkill, loot.parent, 0); } },
    Attack { "tgkill", Attack::deadly, true,
        [](Loot const& loot) { return attempt(SYS_tgkill, loot.parent, loot.parent, 0); } },
    Attack { "rt_sigqueueinfo", Attack::deadly, false, plain<SYS_rt_sigqueueinfo> },
    Attack { "pidfd_open", Attack::deadly, true,
        [](Loot const& loot) { return attempt(SYS_pidfd_open, loot.parent, 0); } },
    Attack { "pidfd_getfd", Attack::deadly, false, plain<SYS_pidfd_getfd> },
    Attack { "pidfd_send_signal", Attack::deadly, false, plain<SYS_pidfd_send_signal> },
    Attack { "limits of the parent", EPERM, true, touchForeignLimits },
    Attack { "setpriority", EPERM, true,
        [](Loot const&) { return attempt(SYS_setpriority, PRIO_PROCESS, 0, 19); } },
    // Its own cage.
    Attack { "unshare", Attack::deadly, false,
        [](Loot const&) { return attempt(SYS_unshare, CLONE_NEWUSER); } },
    Attack { "setns", Attack::deadly, false, plain<SYS_setns> },
    Attack { "prlimit64", EPERM, false, [](Loot const&) { return raiseLimit(); } },
    Attack { "setrlimit", EPERM, true,
        [](Loot const&) {
            rlimit const nothing { 0, 0 };
            return attempt(SYS_setrlimit, RLIMIT_CORE, &nothing);
        } },
    Attack { "outliving the parent", EPERM, true,
        [](Loot const&) { return attempt(SYS_prctl, PR_SET_PDEATHSIG, 0, 0, 0, 0); } },
    Attack { "becoming dumpable", EPERM, true,
        [](Loot const&) { return attempt(SYS_prctl, PR_SET_DUMPABLE, 1, 0, 0, 0); } },
    Attack { "seccomp", Attack::deadly, false, plain<SYS_seccomp> },
    Attack { "personality", ENOSYS, true,
        [](Loot const&) { return attempt(SYS_personality, 0xFFFFFFFFUL); } },
    Attack { "setuid", ENOSYS, true, [](Loot const&) { return attempt(SYS_setuid, ::getuid()); } },
    // Code of its own, and corners of the kernel that decoding has no use for.
    Attack { "mmap of code", Attack::deadly, true,
        [](Loot const&) { return mapping(PROT_READ | PROT_WRITE | PROT_EXEC); } },
    Attack {
        "mprotect of code", Attack::deadly, true, [](Loot const&) { return makeExecutable(); } },
    Attack { "pkey_mprotect", ENOSYS, false, plain<SYS_pkey_mprotect> },
    Attack { "memfd_create", ENOSYS, true,
        [](Loot const&) { return attempt(SYS_memfd_create, "a", 0); } },
    Attack { "mlock", EPERM, false, plain<SYS_mlock> },
    Attack { "io_uring_setup", Attack::deadly, false, plain<SYS_io_uring_setup> },
    Attack { "io_uring_enter", Attack::deadly, false, plain<SYS_io_uring_enter> },
    Attack { "bpf", Attack::deadly, false, plain<SYS_bpf> },
    Attack { "perf_event_open", Attack::deadly, false, plain<SYS_perf_event_open> },
    Attack { "userfaultfd", Attack::deadly, false, plain<SYS_userfaultfd> },
    Attack { "keyctl", Attack::deadly, false, plain<SYS_keyctl> },
    Attack { "add_key", Attack::deadly, false, plain<SYS_add_key> },
    Attack { "init_module", Attack::deadly, false, plain<SYS_init_module> },
    Attack {
        "a call that no kernel knows", ENOSYS, false, [](Loot const&) { return attempt(4000); } },
};

#if defined(__x86_64__)
constexpr Attack onThisMachine[] = {
    Attack { "a call of another machine", Attack::deadly, false,
        [](Loot const&) { return callAs32Bit(); } },
    Attack {
        "a call by x32's numbers", Attack::deadly, false, [](Loot const&) { return callAsX32(); } },

    Attack { "open", EACCES, true, [](Loot const&) { return attempt(SYS_open, file, O_RDONLY); } },
    Attack { "stat", EACCES, true, [](Loot const&) { return attempt(SYS_stat, file, scratch()); } },
    Attack { "access", EACCES, true, [](Loot const&) { return attempt(SYS_access, file, R_OK); } },
    Attack { "readlink", EACCES, true,
        [](Loot const&) { return attempt(SYS_readlink, "/proc/self/exe", scratch(), 4096); } },
    Attack { "unlink", ENOSYS, false, plain<SYS_unlink> },
    Attack { "fork", Attack::deadly, true, [](Loot const&) { return attemptFork(SYS_fork); } },
    Attack { "vfork", Attack::deadly, false, plain<SYS_vfork> },
};
#else
constexpr std::array<Attack, 0> onThisMachine {};
#endif

} // namespace

std::span<Attack const> attacks()
{
    static std::vector<Attack> const all = [] {
        std::vector<Attack> table(std::begin(everywhere), std::end(everywhere));
        table.insert(table.end(), std::begin(onThisMachine), std::end(onThisMachine));
        return table;
    }();
    return all;
}

Attack const* attackNamed(std::string_view name)
{
    auto const found = std::ranges::find(attacks(), name, &Attack::name);
    return found == attacks().end() ? nullptr : &*found;
}

} // namespace pixelhain
