#pragma once
#include "base/FileUrl.h"
#include "base/Task.h"
#include <functional>

namespace pixelhain {

/// Changes below a folder as the system reports them.
class FolderEvents {
public:
    virtual ~FolderEvents() = default;

    /// Calls `folderChanged` on the main thread whenever folders were created, removed or renamed
    /// anywhere below `root`, or when events were lost: the first event at once, later ones
    /// gathered for a second, one call a batch. Changes of plain files are not reported. Dropping
    /// the task ends it. An empty task if nothing can be watched there.
    [[nodiscard]] virtual Task watch(FileUrl const& root, std::function<void()> folderChanged) = 0;

    /// Whether changes in this folder are reported at all: on network drives others change things
    /// that the system here is never told of. Thread-safe; may wait for a disk.
    [[nodiscard]] virtual bool areReported(FileUrl const& folder) const = 0;
};

} // namespace pixelhain
