#include "model/FileWork.h"
#include <algorithm>
#include <chrono>

namespace pixelhain {

namespace {

using namespace std::chrono_literals;

constexpr auto progressDelay = 200ms; // shorter work shows nothing
constexpr auto progressInterval = 100ms;

} // namespace

FileWork::FileWork(Background& background, MainLoop& loop, ShowProgress show)
    : background_(background)
    , loop_(loop)
    , show_(std::move(show))
{
}

void FileWork::give(FileCommand command)
{
    waiting_.push_back(std::move(command));
    beginNext();
}

bool FileWork::takesPhotosAway() const
{
    return (run_ && takesPhotosAway_)
        || std::ranges::any_of(waiting_, &FileCommand::takesPhotosAway);
}

void FileWork::cancel()
{
    waiting_.clear();
    if (run_)
        run_->cancel.set();
}

void FileWork::stopThen(std::function<void()> done)
{
    cancel();
    stopped_.push_back(std::move(done));
    beginNext();
}

void FileWork::begin(std::shared_ptr<FileRun> run, std::size_t total)
{
    run_ = std::move(run);
    total_ = total;
    watch(progressDelay);
}

void FileWork::end()
{
    run_ = nullptr;
    progressTask_ = Task();
    show_(std::nullopt);
}

// Whoever waits for the end may take everything down, so that comes last.
void FileWork::beginNext()
{
    while (!run_ && !waiting_.empty()) {
        auto const command = std::move(waiting_.front());
        waiting_.pop_front();
        takesPhotosAway_ = command.takesPhotosAway;
        command.begin(command.targets.photosNow());
    }
    if (run_)
        return;
    auto const stopped = std::exchange(stopped_, {});
    for (auto const& done : stopped)
        done();
}

void FileWork::watch(std::chrono::milliseconds delay)
{
    progressTask_ = loop_.after(delay, [this] {
        show_(FileProgress { run_->handled, total_ });
        watch(progressInterval);
    });
}

} // namespace pixelhain
