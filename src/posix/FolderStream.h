#pragma once
#include "base/FileUrl.h"
#include "posix/Descriptor.h"
#include "posix/EventBatches.h"
#include "posix/MountPoints.h"
#include "posix/WatchedFolders.h"
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

namespace pixelhain {

/// What a stream of folder events leaves out, and how long it gathers.
struct FolderStreamOptions {
    /// Folders whose names fail this are neither watched nor reported, with all below them.
    std::function<bool(std::string_view name)> isShownName = [](std::string_view) { return true; };
    /// Watches beyond the system's own limit.
    std::size_t mostWatches = std::numeric_limits<std::size_t>::max();
    /// How long later events are gathered.
    std::chrono::milliseconds gathering = EventBatches::second;
};

/// One watch of a tree of folders, to be run on a thread of its own: adds a watch for each folder,
/// from the root downwards, and tells batches of changes. Links are not followed, and folders on
/// file systems that do not report are left out with all below them.
class FolderStream {
public:
    /// `tell` is called on the thread that runs. Changes count from now on.
    FolderStream(FileUrl root, FolderStreamOptions options, std::function<void()> tell);

    /// Whether the system granted what a stream needs; nothing may be run otherwise.
    [[nodiscard]] bool isReady() const { return inotify_ && wake_; }

    /// Returns soon after `stop`.
    void run();

    /// Callable from any thread; does not wait.
    void stop();

private:
    using Watch = WatchedFolders::Watch;

    /// A folder that waits to be watched.
    struct Found {
        Watch parent = WatchedFolders::none;
        std::string name;
        bool isNew = false; ///< made after the stream began
    };

    void begin();
    void end();
    void watchRoot();
    void addSome();
    void add(Found const& found);
    std::optional<Watch> addWatch(Descriptor const& folder);
    void listBelow(Descriptor const& folder, Watch watch, bool isNew);
    bool isOnReportingSystem(Descriptor const& folder, struct stat const& status);
    bool changedSinceBegin(struct stat const& status) const;
    void wait();
    int waitingTime() const;
    void readEvents();
    void handle(inotify_event const& event);
    void handleFolder(inotify_event const& event, std::string_view name);
    void releaseDetached();
    void changed();
    [[nodiscard]] bool hasEvents() const;

    FileUrl const root_;
    FolderStreamOptions const options_;
    std::function<void()> const tell_;
    Descriptor inotify_;
    Descriptor wake_;
    std::atomic<bool> stopped_ = false;
    timespec began_ {};
    bool isFull_ = false; ///< at the limit of watches
    bool isLost_ = false; ///< the root is gone, or events were
    WatchedFolders folders_;
    std::deque<Found> waiting_;
    std::vector<Found> held_; ///< below folders that are on their way to another place
    std::unordered_map<dev_t, bool> reporting_;
    EventBatches batches_;
    std::optional<MountPoints> mounts_; ///< as the thread that runs sees them
};

} // namespace pixelhain
