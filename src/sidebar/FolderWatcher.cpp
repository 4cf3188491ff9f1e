#include "sidebar/FolderWatcher.h"
#include "ports/FolderEvents.h"
#include <utility>

namespace pixelhain {

FolderWatcher::FolderWatcher(FolderEvents* events, std::function<void()> onChange)
    : events_(events)
    , onChange_(std::make_shared<std::function<void()>>(std::move(onChange)))
{
}

void FolderWatcher::watch(std::optional<FileUrl> const& url)
{
    // Ended before the next one begins: two watches of one large tree may exceed what the system
    // grants.
    stream_ = Task();
    if (!events_ || !url)
        return;
    stream_ = events_->watch(*url, [onChange = std::weak_ptr(onChange_)] {
        if (auto const alive = onChange.lock())
            (*alive)();
    });
}

} // namespace pixelhain
