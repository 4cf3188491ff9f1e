#pragma once
#include "base/FileUrl.h"
#include "base/Task.h"
#include "base/Timestamp.h"
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace pixelhain {

class Background;
class FolderEvents;
class MainLoop;
struct FolderTools;

/// Looks now and then at folders on file systems that do not report changes, and tells when
/// subfolders came or went there. Photos that come and go do not count. Main thread only.
class UnreportedFolders {
public:
    static constexpr std::chrono::milliseconds interval { 3000 };

    /// A folder and what is known to be in it.
    struct Known {
        FileUrl folder;
        std::size_t namesHash = 0;
    };

    /// `drawn` says which folders matter whenever a look begins; `events` may be absent: then no
    /// file system reports. `tools` gives what outlives this.
    struct Asks {
        std::function<std::vector<Known>()> drawn;
        std::function<FolderTools()> tools;
        std::function<void()> changed;
        std::shared_ptr<void const> held; ///< kept alive by looks under way
    };
    UnreportedFolders(
        MainLoop& loop, Background& background, FolderEvents const* events, Asks asks);

    /// All is looked at anew after the interval: another drive may lie there now.
    void forget();

private:
    struct Look {
        bool isReported = false; ///< nothing to look at here
        Timestamp modified = distantPast;
        std::size_t namesHash = 0;
        bool again = false; ///< changed of late: a date may stand for two changes
        bool exists = false;
    };
    using Looks = std::unordered_map<FileUrl, Look>;
    struct Answer {
        Looks looks;
        bool changed = false;
    };

    void waitForNext();
    void look();
    static Answer lookAt(FolderTools const& tools, FolderEvents const* events,
        std::vector<Known> const& drawn, Looks const& before);

    MainLoop& loop_;
    Background& background_;
    FolderEvents const* events_;
    Asks asks_;
    Looks looks_;
    Task next_;
    Task looking_;
};

} // namespace pixelhain
