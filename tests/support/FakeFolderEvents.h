#pragma once
#include "ports/FolderEvents.h"
#include <algorithm>
#include <memory>
#include <set>
#include <vector>

namespace pixelhain {

/// Folder changes that a test reports. Remembers every watch that was begun.
class FakeFolderEvents final : public FolderEvents {
public:
    struct Stream {
        FileUrl root;
        std::function<void()> folderChanged;
        bool running = true;
        std::size_t othersAtStart = 0; ///< streams that still ran when this one began
    };

    Task watch(FileUrl const& root, std::function<void()> folderChanged) override
    {
        if (refuses)
            return Task();
        auto const stream = std::make_shared<Stream>();
        stream->root = root;
        stream->folderChanged = std::move(folderChanged);
        stream->othersAtStart = running().size();
        streams.push_back(stream);
        return Task([stream] { stream->running = false; });
    }

    bool areReported(FileUrl const& folder) const override { return !remote.contains(folder); }

    std::vector<std::shared_ptr<Stream>> running() const
    {
        std::vector<std::shared_ptr<Stream>> live;
        std::ranges::copy_if(
            streams, std::back_inserter(live), [](auto const& stream) { return stream->running; });
        return live;
    }

    /// A batch of events that concerns folders reaches everyone who still watches.
    void report()
    {
        for (auto const& stream : running())
            stream->folderChanged();
    }

    std::vector<std::shared_ptr<Stream>> streams;
    bool refuses = false; ///< nothing can be watched
    std::set<FileUrl> remote; ///< folders whose changes are not reported; set before use
};

} // namespace pixelhain
