#pragma once
#include "base/FileUrl.h"
#include "base/Task.h"
#include <functional>
#include <memory>
#include <optional>

namespace pixelhain {

class FolderEvents;

/// Notices when folders are created, removed or renamed anywhere below one folder. Photos that come
/// and go do not count. Main thread only.
class FolderWatcher {
public:
    /// `events` may be absent: then nothing is ever reported.
    FolderWatcher(FolderEvents* events, std::function<void()> onChange);

    /// Watches `url` instead of what was watched before; nothing when absent.
    void watch(std::optional<FileUrl> const& url);

private:
    FolderEvents* events_;
    std::shared_ptr<std::function<void()>> onChange_;
    Task stream_;
};

} // namespace pixelhain
