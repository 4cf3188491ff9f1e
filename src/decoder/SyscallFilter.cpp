#include "decoder/SyscallFilter.h"
#include "decoder/FilterProgram.h"
#include <cerrno>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/prctl.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace pixelhain {

namespace {

constexpr std::uint32_t allow = SECCOMP_RET_ALLOW;
constexpr std::uint32_t kill = SECCOMP_RET_KILL_PROCESS;

constexpr std::uint32_t refuse(std::uint32_t error)
{
    return SECCOMP_RET_ERRNO | error;
}

#if defined(__x86_64__)
constexpr std::uint32_t machine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t machine = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t machine = 0;
#endif
// Where the numbers of another way of calling begin (x32).
constexpr std::uint32_t numbers = 0x40000000;

// Memory, threads, waiting, time, the socket and the files that were handed over.
void addHarmless(FilterProgram& program)
{
    program.add(
        { SYS_futex, SYS_read, SYS_pread64, SYS_recvmsg, SYS_sendmsg, SYS_close, SYS_lseek,
            SYS_fstat, SYS_ppoll, SYS_brk, SYS_munmap, SYS_madvise, SYS_mremap, SYS_exit,
            SYS_exit_group, SYS_rt_sigreturn, SYS_rt_sigprocmask, SYS_rt_sigaction,
            SYS_restart_syscall, SYS_sigaltstack, SYS_sched_yield, SYS_sched_getaffinity,
            SYS_set_robust_list, SYS_rseq, SYS_membarrier, SYS_clock_gettime, SYS_clock_getres,
            SYS_clock_nanosleep, SYS_nanosleep, SYS_gettimeofday, SYS_times, SYS_getrusage,
            SYS_getcpu, SYS_getrandom, SYS_getpid, SYS_gettid, SYS_getuid, SYS_geteuid, SYS_getgid,
            SYS_getegid, SYS_getpriority, SYS_sysinfo, SYS_uname, SYS_setitimer },
        FilterProgram::leave(allow));
#if defined(__x86_64__)
    program.add({ SYS_poll, SYS_time }, FilterProgram::leave(allow));
#endif
}

// What decoding needs in one form and an intruder in another.
void addChecked(FilterProgram& program)
{
    program.add({ SYS_mmap, SYS_mprotect }, FilterProgram::ifBits(2, PROT_EXEC, 0, allow, kill));
    // A thread, that is: nothing of the process is copied, nothing is put in a new namespace.
    constexpr std::uint32_t thread
        = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND | CLONE_THREAD;
    constexpr std::uint32_t details = CLONE_SYSVSEM | CLONE_SETTLS | CLONE_PARENT_SETTID
        | CLONE_CHILD_CLEARTID | CLONE_CHILD_SETTID | CLONE_DETACHED;
    program.add({ SYS_clone }, FilterProgram::ifBits(0, ~details, thread, allow, kill));
    // Its arguments lie in memory, where they cannot be checked; the C library falls back to clone.
    program.add({ SYS_clone3 }, FilterProgram::leave(refuse(ENOSYS)));
    // Reading its own limits, not changing them.
    program.add({ SYS_prlimit64 }, FilterProgram::ifZero(2, 0, allow, refuse(EPERM)));
    program.add({ SYS_prctl },
        FilterProgram::ifOneOf(0, { PR_SET_NAME, PR_SET_VMA }, allow, refuse(EPERM)));
    // How abort() ends the process.
    auto const self = static_cast<std::uint32_t>(::getpid());
    program.add({ SYS_tgkill }, FilterProgram::ifOneOf(0, { self }, allow, kill));
    // Warnings of the libraries; answers leave by sendmsg.
    program.add({ SYS_write, SYS_writev },
        FilterProgram::ifOneOf(0, { STDERR_FILENO }, allow, refuse(EPERM)));
    program.add(
        { SYS_fcntl }, FilterProgram::ifOneOf(1, { F_GETFL, F_GETFD }, allow, refuse(EPERM)));
}

// What libraries try and can do without: they get the error that they are prepared for.
void addRefused(FilterProgram& program)
{
    program.add({ SYS_openat, SYS_openat2, SYS_newfstatat, SYS_statx, SYS_faccessat, SYS_faccessat2,
                    SYS_readlinkat, SYS_getcwd, SYS_getdents64, SYS_socket, SYS_socketpair },
        FilterProgram::leave(refuse(EACCES)));
#if defined(__x86_64__)
    program.add({ SYS_open, SYS_creat, SYS_stat, SYS_lstat, SYS_access, SYS_readlink },
        FilterProgram::leave(refuse(EACCES)));
#endif
    program.add({ SYS_ioctl }, FilterProgram::leave(refuse(ENOTTY)));
    program.add(
        { SYS_sched_setaffinity, SYS_sched_setattr, SYS_sched_setparam, SYS_sched_setscheduler,
            SYS_setpriority, SYS_setrlimit, SYS_mbind, SYS_mlock, SYS_mlock2, SYS_mlockall },
        FilterProgram::leave(refuse(EPERM)));
}

// What no decoder ever asks for: whoever does has taken the process over.
void addDeadly(FilterProgram& program)
{
    program.add(
        { SYS_execve, SYS_execveat, SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev,
            SYS_kill, SYS_tkill, SYS_rt_sigqueueinfo, SYS_rt_tgsigqueueinfo, SYS_pidfd_open,
            SYS_pidfd_getfd, SYS_pidfd_send_signal, SYS_connect, SYS_bind, SYS_listen, SYS_accept,
            SYS_accept4, SYS_unshare, SYS_setns, SYS_mount, SYS_umount2, SYS_move_mount,
            SYS_open_tree, SYS_fsopen, SYS_fsconfig, SYS_fsmount, SYS_fspick, SYS_pivot_root,
            SYS_chroot, SYS_open_by_handle_at, SYS_bpf, SYS_perf_event_open, SYS_userfaultfd,
            SYS_io_uring_setup, SYS_io_uring_enter, SYS_io_uring_register, SYS_keyctl, SYS_add_key,
            SYS_request_key, SYS_seccomp, SYS_init_module, SYS_finit_module, SYS_kexec_load },
        FilterProgram::leave(kill));
#if defined(__x86_64__)
    program.add({ SYS_fork, SYS_vfork }, FilterProgram::leave(kill));
#endif
}

} // namespace

bool filterSyscalls()
{
    if (machine == 0)
        return false;
    FilterProgram program(machine, numbers, kill, FilterProgram::leave(refuse(ENOSYS)));
    addHarmless(program);
    addChecked(program);
    addRefused(program);
    addDeadly(program);
    auto code = program.assemble();
    if (!code)
        return false;
    sock_fprog const whole { static_cast<unsigned short>(code->size()), code->data() };
    return ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &whole) == 0;
}

} // namespace pixelhain
