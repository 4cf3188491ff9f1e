#include "posix/InotifyFolderEvents.h"
#include "ports/MainLoop.h"
#include "posix/FolderHandle.h"
#include "posix/ReportingFileSystems.h"
#include <fcntl.h>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace pixelhain {

namespace {

// Adding very many watches takes a while and must not slow anything else down.
constexpr int niceness = 10;

// Who is to be told; both belong to the main thread.
struct Listener {
    std::function<void()> folderChanged;
    bool isDropped = false;
};

void becomeNice()
{
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness);
}

} // namespace

struct InotifyFolderEvents::Running {
    template <typename... Arguments>
    explicit Running(Arguments&&... arguments)
        : stream(std::forward<Arguments>(arguments)...)
    {
    }

    FolderStream stream;
    std::atomic<bool> hasEnded = false;
    std::thread thread;
};

InotifyFolderEvents::InotifyFolderEvents(MainLoop& loop, FolderStreamOptions options)
    : loop_(loop)
    , options_(std::move(options))
{
}

InotifyFolderEvents::~InotifyFolderEvents()
{
    for (auto const& running : running_)
        running->stream.stop();
    for (auto const& running : running_)
        running->thread.join();
}

void InotifyFolderEvents::joinEnded()
{
    std::erase_if(running_, [](auto const& running) {
        if (!running->hasEnded)
            return false;
        running->thread.join();
        return true;
    });
}

Task InotifyFolderEvents::watch(FileUrl const& root, std::function<void()> folderChanged)
{
    joinEnded();
    auto const listener = std::make_shared<Listener>(Listener { std::move(folderChanged) });
    auto const tell = [&loop = loop_, listener] {
        loop.post([listener] {
            if (listener->isDropped)
                return;
            // It may drop itself while it runs.
            auto const call = listener->folderChanged;
            call();
        });
    };
    auto const running = std::make_shared<Running>(root, options_, tell);
    if (!running->stream.isReady())
        return Task();
    try {
        running->thread = std::thread([running] {
            becomeNice();
            running->stream.run();
            running->hasEnded = true;
        });
    } catch (std::system_error const&) {
        return Task();
    }
    running_.push_back(running);
    return Task([running, listener] {
        listener->isDropped = true;
        listener->folderChanged = nullptr;
        running->stream.stop();
    });
}

bool InotifyFolderEvents::areReported(FileUrl const& folder) const
{
    auto const opened = openFolder(folder.path(), O_PATH);
    return !opened || reportsEveryChange(opened.get());
}

} // namespace pixelhain
