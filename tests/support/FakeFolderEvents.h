#pragma once
#include "ports/FolderEvents.h"
#include <memory>
#include <set>
#include <vector>

namespace pixelhain {

/// Folder changes that a test reports. Remembers every watch that was begun.
class FakeFolderEvents final : public FolderEvents {
public:
    FakeFolderEvents();
    ~FakeFolderEvents() override;

    struct Stream {
        FileUrl root;
        std::function<void()> folderChanged;
        bool running = true;
        std::size_t othersAtStart = 0; ///< streams that still ran when this one began
    };

    Task watch(FileUrl const& root, std::function<void()> folderChanged) override;

    bool areReported(FileUrl const& folder) const override;

    std::vector<std::shared_ptr<Stream>> running() const;

    /// A batch of events that concerns folders reaches everyone who still watches.
    void report();

    std::vector<std::shared_ptr<Stream>> streams;
    bool refuses = false; ///< nothing can be watched
    std::set<FileUrl> remote; ///< folders whose changes are not reported; set before use
};

} // namespace pixelhain
