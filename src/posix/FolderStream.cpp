#include "posix/FolderStream.h"
#include "posix/FolderHandle.h"
#include "posix/ReportingFileSystems.h"
#include <algorithm>
#include <array>
#include <climits>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <sys/eventfd.h>
#include <utility>

namespace pixelhain {

namespace {

using Clock = std::chrono::steady_clock;

// How soon a root that went away, a drive that was unplugged, is found to be back.
constexpr std::chrono::milliseconds lookForRoot { 2000 };

// Folders between two looks at what happened meanwhile.
constexpr int foldersAtOnce = 64;

constexpr std::uint32_t interest = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO
    | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

constexpr std::uint32_t selfGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

Descriptor newInotify()
{
    return Descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
}

} // namespace

FolderStream::FolderStream(FileUrl root, FolderStreamOptions options, std::function<void()> tell)
    : root_(std::move(root))
    , options_(std::move(options))
    , tell_(std::move(tell))
    , inotify_(newInotify())
    , wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , batches_(options_.gathering)
{
    ::clock_gettime(CLOCK_REALTIME, &began_);
}

void FolderStream::stop()
{
    stopped_ = true;
    std::uint64_t const one = 1;
    [[maybe_unused]] auto const written = ::write(wake_.get(), &one, sizeof one);
}

void FolderStream::run()
{
    mounts_.emplace(root_);
    watchRoot();
    while (!stopped_) {
        if (isLost_)
            begin();
        addSome();
        if (waiting_.empty() && !hasEvents())
            releaseDetached();
        wait();
        readEvents();
        if (batches_.expire(Clock::now()))
            tell_();
    }
}

// All is looked at anew, after a root that came back or events that were lost.
void FolderStream::begin()
{
    inotify_ = newInotify();
    ::clock_gettime(CLOCK_REALTIME, &began_);
    isLost_ = false;
    watchRoot();
    if (!isLost_)
        changed();
}

// Closing gives all watches back at once.
void FolderStream::end()
{
    inotify_ = Descriptor();
    folders_.setRoot(WatchedFolders::none, {});
    waiting_.clear();
    held_.clear();
    reporting_.clear();
    isFull_ = false;
    isLost_ = true;
}

void FolderStream::watchRoot()
{
    auto const folder = openFolder(root_.path(), O_RDONLY | O_NONBLOCK);
    struct stat status { };
    if (!inotify_ || !folder || ::fstat(folder.get(), &status) < 0)
        return end();
    if (!isOnReportingSystem(folder, status))
        return;
    auto const watch = addWatch(folder);
    if (!watch)
        return;
    folders_.setRoot(*watch, root_.path());
    if (changedSinceBegin(status))
        changed();
    listBelow(folder, *watch, false);
}

// The kernel resolves the descriptor instead of a path, which may be too long or, by now, another
// folder's.
std::optional<FolderStream::Watch> FolderStream::addWatch(Descriptor const& folder)
{
    if (folders_.count() >= options_.mostWatches) {
        isFull_ = true;
        return std::nullopt;
    }
    auto const link = "/proc/self/fd/" + std::to_string(folder.get());
    auto const watch = ::inotify_add_watch(inotify_.get(), link.c_str(), interest);
    if (watch >= 0)
        return watch;
    isFull_ = errno == ENOSPC;
    return std::nullopt;
}

void FolderStream::addSome()
{
    for (int i = 0; i < foldersAtOnce && !waiting_.empty() && !stopped_ && !isLost_; ++i) {
        auto const found = std::move(waiting_.front());
        waiting_.pop_front();
        add(found);
        if (std::exchange(isFull_, false))
            waiting_.clear();
    }
}

void FolderStream::add(Found const& found)
{
    if (!folders_.knows(found.parent))
        return;
    auto path = folders_.path(found.parent);
    if (!path) {
        held_.push_back(found);
        return;
    }
    if (!path->ends_with('/'))
        *path += '/';
    auto const folder = openFolder(*path + found.name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW);
    struct stat status { };
    if (!folder || ::fstat(folder.get(), &status) < 0 || !isOnReportingSystem(folder, status))
        return;
    auto const watch = addWatch(folder);
    if (!watch || folders_.isAttached(*watch))
        return;
    bool const wasKnown = folders_.knows(*watch);
    folders_.attach(*watch, found.parent, found.name);
    if (wasKnown) {
        waiting_.insert(waiting_.end(), std::make_move_iterator(held_.begin()),
            std::make_move_iterator(held_.end()));
        held_.clear();
        return;
    }
    // Read after the watch stands: what changes from here on is an event.
    if (!found.isNew && ::fstat(folder.get(), &status) == 0 && changedSinceBegin(status))
        changed();
    listBelow(folder, *watch, found.isNew);
}

void FolderStream::listBelow(Descriptor const& folder, Watch watch, bool isNew)
{
    bool foundAny = false;
    visitEntries(folder, [&](std::string_view name, EntryKind kind) {
        if (kind != EntryKind::folder && kind != EntryKind::unknown)
            return;
        if (!options_.isShownName(name))
            return;
        foundAny = true;
        waiting_.push_back({ watch, std::string(name), isNew });
    });
    // They were made before their parent got its watch, so no event tells of them.
    if (isNew && foundAny)
        changed();
}

// Most folders lie on the same system as their parents, so only few are asked.
bool FolderStream::isOnReportingSystem(Descriptor const& folder, struct stat const& status)
{
    auto const known = reporting_.find(status.st_dev);
    if (known != reporting_.end())
        return known->second;
    return reporting_[status.st_dev] = reportsEveryChange(folder.get());
}

// What was listed for the window before its folder got a watch may have changed in between.
bool FolderStream::changedSinceBegin(struct stat const& status) const
{
    auto const& at = status.st_mtim;
    return std::pair(at.tv_sec, at.tv_nsec) > std::pair(began_.tv_sec, began_.tv_nsec);
}

bool FolderStream::hasEvents() const
{
    pollfd look { inotify_.get(), POLLIN, 0 };
    return inotify_ && ::poll(&look, 1, 0) > 0;
}

int FolderStream::waitingTime() const
{
    auto const now = Clock::now();
    auto until = Clock::time_point::max();
    if (!waiting_.empty())
        until = now;
    if (isLost_)
        until = std::min(until, now + lookForRoot);
    if (auto const due = batches_.due())
        until = std::min(until, *due);
    if (until == Clock::time_point::max())
        return -1;
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(until - now).count();
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left));
}

// A drive that comes or goes covers or uncovers folders without any event: all is looked at anew.
void FolderStream::wait()
{
    std::array<pollfd, 3> all { { { wake_.get(), POLLIN, 0 }, { inotify_.get(), POLLIN, 0 },
        { mounts_->descriptor(), POLLPRI, 0 } } };
    ::poll(all.data(), all.size(), waitingTime());
    if (all[2].revents != 0 && mounts_->haveChanged()) {
        changed();
        end();
    }
}

void FolderStream::readEvents()
{
    alignas(inotify_event) std::array<char, 64 * 1024> buffer;
    while (!stopped_ && !isLost_) {
        auto const used
            = uninterrupted([&] { return ::read(inotify_.get(), buffer.data(), buffer.size()); });
        if (used <= 0)
            return;
        for (std::ptrdiff_t at = 0; at < used && !isLost_;) {
            auto const& event = *reinterpret_cast<inotify_event const*>(buffer.data() + at);
            at += static_cast<std::ptrdiff_t>(sizeof event + event.len);
            handle(event);
        }
    }
}

void FolderStream::handle(inotify_event const& event)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        changed();
        return end();
    }
    if (event.wd == folders_.root() && (event.mask & selfGone) != 0) {
        changed();
        return end();
    }
    if ((event.mask & IN_UNMOUNT) != 0)
        changed();
    if ((event.mask & IN_IGNORED) != 0)
        folders_.forget(event.wd);
    if ((event.mask & IN_ISDIR) != 0 && event.len > 0 && folders_.knows(event.wd))
        handleFolder(event, event.name);
}

void FolderStream::handleFolder(inotify_event const& event, std::string_view name)
{
    if (!options_.isShownName(name))
        return;
    changed();
    auto const known = folders_.find(event.wd, name);
    if ((event.mask & IN_MOVED_FROM) != 0 && known)
        folders_.detach(*known);
    if ((event.mask & IN_DELETE) != 0 && known) {
        folders_.forget(*known);
        ::inotify_rm_watch(inotify_.get(), *known);
    }
    if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0)
        waiting_.push_back({ event.wd, std::string(name), true });
}

// A folder that was moved and did not turn up again has left the tree; its watch would report what
// happens elsewhere.
void FolderStream::releaseDetached()
{
    for (auto const watch : folders_.takeDetached())
        ::inotify_rm_watch(inotify_.get(), watch);
    held_.clear();
}

void FolderStream::changed()
{
    if (batches_.event(Clock::now()))
        tell_();
}

} // namespace pixelhain
