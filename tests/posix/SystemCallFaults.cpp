// Hardened, some calls have bodies in the C library's headers; here they are to get others.
#undef _FORTIFY_SOURCE

#include "SystemCallFaults.h"
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace pixelhain {

namespace {

thread_local SystemCallFaults* active = nullptr;

} // namespace

SystemCallFaults::SystemCallFaults(std::vector<Fault> faults)
    : faults_(std::move(faults))
    , seen_(faults_.size())
{
    active = this;
}

SystemCallFaults::~SystemCallFaults()
{
    active = nullptr;
}

int SystemCallFaults::calls(std::string_view call) const
{
    return static_cast<int>(
        call.empty() ? std::ssize(made_) : std::count(made_.begin(), made_.end(), call));
}

SystemCallFaults::Verdict SystemCallFaults::judge(std::string_view call)
{
    if (active == nullptr)
        return {};
    auto& faults = *active;
    faults.made_.push_back(call);
    Verdict verdict;
    for (std::size_t i = 0; i < faults.faults_.size(); ++i) {
        auto const& fault = faults.faults_[i];
        if (!fault.call.empty() && fault.call != call)
            continue;
        auto const number = ++faults.seen_[i];
        if (verdict.struck || number < fault.from || number - fault.from >= fault.count)
            continue;
        if (fault.error == Fault::kill)
            std::raise(SIGKILL);
        if (fault.before) {
            active = nullptr;
            fault.before();
            active = &faults;
        }
        if (fault.error == Fault::none)
            continue;
        if (fault.error == Fault::uncounted) {
            verdict = { false, Fault::uncounted };
            continue;
        }
        errno = fault.error;
        verdict = { true, fault.error == Fault::pretendSuccess ? 0 : -1 };
    }
    return verdict;
}

std::vector<std::string_view> const& SystemCallFaults::names()
{
    static std::vector<std::string_view> const all { "openat", "O_TMPFILE", "mkdirat", "fstat",
        "fstatat", "fcntl", "statx", "ioctl", "fallocate", "copy_file_range", "pread", "pwrite",
        "write", "sync_file_range", "fsync", "fchown", "fchmod", "futimens", "flistxattr",
        "fgetxattr", "fsetxattr", "linkat", "renameat", "renameat2", "unlinkat", "readlinkat",
        "symlinkat" };
    return all;
}

} // namespace pixelhain

// The C library's function of the same name, unless the call is to fail.
#define PASS_ON(name, call, ...)                                                                   \
    static auto const real = reinterpret_cast<decltype(&::name)>(::dlsym(RTLD_NEXT, #name));       \
    if (auto const verdict = pixelhain::SystemCallFaults::judge(call); verdict.struck)             \
        return verdict.result;                                                                     \
    return real(__VA_ARGS__)

extern "C" {

int openat(int folder, char const* path, int flags, ...)
{
    std::va_list more;
    va_start(more, flags);
    mode_t const mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    bool const isNameless = (flags & O_TMPFILE) == O_TMPFILE;
    PASS_ON(openat, isNameless ? "O_TMPFILE" : "openat", folder, path, flags, mode);
}

int fcntl(int descriptor, int command, ...)
{
    std::va_list more;
    va_start(more, command);
    auto* const argument = va_arg(more, void*);
    va_end(more);
    PASS_ON(fcntl, "fcntl", descriptor, command, argument);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    std::va_list more;
    va_start(more, request);
    auto* const argument = va_arg(more, void*);
    va_end(more);
    PASS_ON(ioctl, "ioctl", descriptor, request, argument);
}

int mkdirat(int folder, char const* path, mode_t mode) noexcept
{
    PASS_ON(mkdirat, "mkdirat", folder, path, mode);
}

int fstat(int descriptor, struct stat* status) noexcept
{
    static auto const real = reinterpret_cast<decltype(&::fstat)>(::dlsym(RTLD_NEXT, "fstat"));
    auto const verdict = pixelhain::SystemCallFaults::judge("fstat");
    if (verdict.struck)
        return verdict.result;
    auto const result = real(descriptor, status);
    if (result == 0 && verdict.result == pixelhain::Fault::uncounted)
        status->st_nlink = 0;
    return result;
}

int fstatat(int folder, char const* path, struct stat* status, int flags) noexcept
{
    PASS_ON(fstatat, "fstatat", folder, path, status, flags);
}

int statx(int folder, char const* path, int flags, unsigned mask, struct statx* status) noexcept
{
    PASS_ON(statx, "statx", folder, path, flags, mask, status);
}

int fallocate(int descriptor, int mode, off_t offset, off_t length)
{
    PASS_ON(fallocate, "fallocate", descriptor, mode, offset, length);
}

ssize_t copy_file_range(
    int from, off_t* fromOffset, int to, off_t* toOffset, size_t length, unsigned flags)
{
    PASS_ON(copy_file_range, "copy_file_range", from, fromOffset, to, toOffset, length, flags);
}

ssize_t pread(int descriptor, void* into, size_t count, off_t offset)
{
    PASS_ON(pread, "pread", descriptor, into, count, offset);
}

ssize_t pwrite(int descriptor, void const* bytes, size_t count, off_t offset)
{
    PASS_ON(pwrite, "pwrite", descriptor, bytes, count, offset);
}

ssize_t write(int descriptor, void const* bytes, size_t count)
{
    PASS_ON(write, "write", descriptor, bytes, count);
}

int sync_file_range(int descriptor, off_t from, off_t count, unsigned flags)
{
    PASS_ON(sync_file_range, "sync_file_range", descriptor, from, count, flags);
}

int fsync(int descriptor)
{
    PASS_ON(fsync, "fsync", descriptor);
}

int fchown(int descriptor, uid_t user, gid_t group) noexcept
{
    PASS_ON(fchown, "fchown", descriptor, user, group);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    PASS_ON(fchmod, "fchmod", descriptor, mode);
}

int futimens(int descriptor, timespec const* times) noexcept
{
    PASS_ON(futimens, "futimens", descriptor, times);
}

ssize_t flistxattr(int descriptor, char* names, size_t size) noexcept
{
    PASS_ON(flistxattr, "flistxattr", descriptor, names, size);
}

ssize_t fgetxattr(int descriptor, char const* name, void* value, size_t size) noexcept
{
    PASS_ON(fgetxattr, "fgetxattr", descriptor, name, value, size);
}

int fsetxattr(int descriptor, char const* name, void const* value, size_t size, int flags) noexcept
{
    PASS_ON(fsetxattr, "fsetxattr", descriptor, name, value, size, flags);
}

int linkat(int from, char const* path, int to, char const* newPath, int flags) noexcept
{
    PASS_ON(linkat, "linkat", from, path, to, newPath, flags);
}

int renameat(int from, char const* path, int to, char const* newPath) noexcept
{
    PASS_ON(renameat, "renameat", from, path, to, newPath);
}

int renameat2(int from, char const* path, int to, char const* newPath, unsigned flags) noexcept
{
    PASS_ON(renameat2, "renameat2", from, path, to, newPath, flags);
}

int unlinkat(int folder, char const* path, int flags) noexcept
{
    PASS_ON(unlinkat, "unlinkat", folder, path, flags);
}

ssize_t readlinkat(int folder, char const* path, char* target, size_t size) noexcept
{
    PASS_ON(readlinkat, "readlinkat", folder, path, target, size);
}

int symlinkat(char const* target, int folder, char const* path) noexcept
{
    PASS_ON(symlinkat, "symlinkat", target, folder, path);
}

} // extern "C"
