#include "posix/PosixFileSystem.h"
#include "posix/FolderHandle.h"
#include "posix/LookPlan.h"
#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <fcntl.h>
#include <limits>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>

namespace pixelhain {

namespace {

// So many files tell whether the file system waits for a disk: if half of them took this long.
constexpr std::size_t firstFiles = 8;
constexpr std::chrono::microseconds slowLook { 100 };

EntryKind kindOfMode(unsigned mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return EntryKind::file;
    case S_IFDIR:
        return EntryKind::folder;
    case S_IFLNK:
        return EntryKind::link;
    default:
        return EntryKind::other;
    }
}

// Dates beyond what nanoseconds in 64 bits can hold become the nearest that they can.
Timestamp timestampOf(statx_timestamp const& time)
{
    constexpr std::int64_t nanosPerSecond = 1'000'000'000;
    constexpr auto most = std::numeric_limits<std::int64_t>::max() / nanosPerSecond - 1;
    if (time.tv_sec > most)
        return Timestamp::max();
    if (time.tv_sec < -most)
        return distantPast;
    return Timestamp(std::chrono::nanoseconds(time.tv_sec * nanosPerSecond + time.tv_nsec));
}

// Asks about files relative to their folder, which stays open as long as the next file lies in it:
// the kernel then resolves one name instead of a whole path.
class DetailsReader {
public:
    std::optional<FileDetails> read(FileUrl const& file)
    {
        std::string_view const path = file.path();
        auto const slash = path.rfind('/');
        if (slash == std::string_view::npos)
            return std::nullopt;
        if (!enter(path.substr(0, slash == 0 ? 1 : slash)))
            return std::nullopt;
        return ask(file.cString() + slash + 1);
    }

private:
    bool enter(std::string_view folder)
    {
        if (folder != folder_) {
            folder_ = folder;
            handle_ = openFolder(folder, O_PATH);
        }
        return static_cast<bool>(handle_);
    }

    std::optional<FileDetails> ask(char const* name) const
    {
        struct statx answer { };
        int const flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
        unsigned const wanted = STATX_TYPE | STATX_SIZE | STATX_MTIME;
        if (uninterrupted([&] { return ::statx(handle_.get(), name, flags, wanted, &answer); }) < 0)
            return std::nullopt;
        FileDetails details;
        details.kind = kindOfMode(answer.stx_mode);
        if ((answer.stx_mask & STATX_MTIME) != 0)
            details.modified = timestampOf(answer.stx_mtime);
        if ((answer.stx_mask & STATX_SIZE) != 0)
            details.size = static_cast<std::int64_t>(answer.stx_size);
        return details;
    }

    std::string folder_;
    Descriptor handle_;
};

// Whether they had to be waited for.
bool lookAtFirst(std::span<FileUrl const> files, std::vector<std::optional<FileDetails>>& answers)
{
    using Clock = std::chrono::steady_clock;
    DetailsReader reader;
    std::size_t slow = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        auto const start = Clock::now();
        answers[i] = reader.read(files[i]);
        if (Clock::now() - start >= slowLook)
            ++slow;
    }
    return slow > 0 && slow * 2 >= files.size();
}

// On threads that give way to whoever else wants to run: pictures, above all, whose names are
// known.
void runAside(std::size_t count, std::function<void()> const& work)
{
    constexpr int nice = 10; // more than the program's own
    auto const own = ::getpriority(PRIO_PROCESS, 0);
    std::vector<std::jthread> threads;
    try {
        while (threads.size() < count)
            threads.emplace_back([&] {
                ::setpriority(PRIO_PROCESS, 0, own + nice); // of this thread alone
                work();
            });
    } catch (std::system_error const&) {
        // At the limit of threads the ones that did start share the work.
    }
    if (threads.empty())
        work();
}

bool isThere(FileUrl const& url, struct stat& status)
{
    if (url.empty())
        return false;
    if (url.path().size() < PATH_MAX)
        return uninterrupted([&] { return ::stat(url.cString(), &status); }) == 0;
    auto const parent = openFolder(url.parent().path(), O_PATH);
    std::string const name(url.name());
    return parent
        && uninterrupted([&] { return ::fstatat(parent.get(), name.c_str(), &status, 0); }) == 0;
}

} // namespace

bool PosixFileSystem::list(FileUrl const& folder, EntryVisitor const& visit) const
{
    auto const handle = openFolder(folder.path(), O_RDONLY | O_NONBLOCK);
    if (!handle)
        return false;
    visitEntries(handle, visit);
    return true;
}

std::vector<std::optional<FileDetails>> PosixFileSystem::details(
    std::span<FileUrl const> files) const
{
    std::vector<std::optional<FileDetails>> answers(files.size());
    auto const first = std::min(firstFiles, files.size());
    auto const rest = files.size() - first;
    auto const plan = planLooks(rest, lookAtFirst(files.first(first), answers));
    std::atomic<std::size_t> next = first;
    auto const work = [&] {
        DetailsReader reader;
        auto const step = plan.filesAtATime;
        for (auto from = next.fetch_add(step); from < files.size(); from = next.fetch_add(step))
            for (auto i = from; i < std::min(from + step, files.size()); ++i)
                answers[i] = reader.read(files[i]);
    };
    if (plan.threads > 1)
        runAside(plan.threads, work);
    else
        work();
    return answers;
}

bool PosixFileSystem::isFolder(FileUrl const& url) const
{
    struct stat status { };
    return isThere(url, status) && S_ISDIR(status.st_mode);
}

bool PosixFileSystem::exists(FileUrl const& url) const
{
    struct stat status { };
    return isThere(url, status);
}

} // namespace pixelhain
