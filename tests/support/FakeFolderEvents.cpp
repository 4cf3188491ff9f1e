#include "support/FakeFolderEvents.h"
#include <algorithm>
#include <iterator>

namespace pixelhain {

FakeFolderEvents::FakeFolderEvents() = default;
FakeFolderEvents::~FakeFolderEvents() = default;

Task FakeFolderEvents::watch(FileUrl const& root, std::function<void()> folderChanged)
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

bool FakeFolderEvents::areReported(FileUrl const& folder) const
{
    return !remote.contains(folder);
}

std::vector<std::shared_ptr<FakeFolderEvents::Stream>> FakeFolderEvents::running() const
{
    std::vector<std::shared_ptr<Stream>> live;
    std::ranges::copy_if(
        streams, std::back_inserter(live), [](auto const& stream) { return stream->running; });
    return live;
}

void FakeFolderEvents::report()
{
    for (auto const& stream : running())
        stream->folderChanged();
}

} // namespace pixelhain
