#pragma once
#include "base/CancelFlag.h"
#include "base/FileUrl.h"
#include "base/Task.h"
#include "model/CommandTargets.h"
#include "model/FileProgress.h"
#include "ports/Background.h"
#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pixelhain {

/// What running work on files, or on the pages of one, shares with the main thread.
struct FileRun {
    CancelFlag cancel;
    std::atomic<std::size_t> handled { 0 };
};

/// A command that changes files. What it is meant for is noted when it is given, and follows the
/// photos that commands before it take away.
struct FileCommand {
    CommandTargets targets;
    /// Called with the targets that are left by then; may call FileWork::run once.
    std::function<void(std::vector<FileUrl>)> begin;
    bool takesPhotosAway = false; ///< from their folders
};

/// Work on files, strictly one piece after the other, off the main thread. Main thread only.
class FileWork {
public:
    using ShowProgress = std::function<void(std::optional<FileProgress>)>;

    /// `show` hears how far work has come that takes longer than 200 ms, and when it is over.
    FileWork(Background& background, MainLoop& loop, ShowProgress show);
    ~FileWork() { cancel(); }

    bool isBusy() const { return run_ != nullptr || !waiting_.empty(); }

    /// Begins the command at its turn: at once if nothing is under way.
    void give(FileCommand command);

    /// Does `work(FileRun&)` on `total` files or pages in the background, then `done(result)` here,
    /// then begins the next command. Only while a command begins.
    template <typename Work, typename Done> void run(std::size_t total, Work work, Done done)
    {
        auto const run = std::make_shared<FileRun>();
        begin(run, total);
        task_ = runThen(
            background_, loop_, Priority::userInitiated,
            [run, work = std::move(work)] { return work(*run); },
            [this, done = std::move(done)](auto result) {
                end();
                done(std::move(result));
                beginNext();
            });
    }

    /// Whether what is under way or waits may take photos from their folders.
    bool takesPhotosAway() const;

    /// Stops after the file that is under way, or in the middle of a long copy. Commands that have
    /// not begun are forgotten.
    void cancel();

    /// Cancels, and calls `done` once nothing is under way; at once if nothing is.
    void stopThen(std::function<void()> done);

    /// Commands that have not begun.
    std::deque<FileCommand>& waiting() { return waiting_; }

private:
    void begin(std::shared_ptr<FileRun> run, std::size_t total);
    void end();
    void beginNext();
    void watch(std::chrono::milliseconds delay);

    Background& background_;
    MainLoop& loop_;
    ShowProgress show_;
    std::deque<FileCommand> waiting_;
    std::shared_ptr<FileRun> run_; ///< null while nothing is under way
    std::size_t total_ = 0;
    bool takesPhotosAway_ = false; ///< what is under way
    std::vector<std::function<void()>> stopped_;
    Task progressTask_;
    Task task_;
};

} // namespace pixelhain
