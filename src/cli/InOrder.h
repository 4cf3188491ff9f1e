#pragma once
#include "base/Task.h"
#include "cli/Command.h"
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace pixelhain {

class ConsoleLoop;

/// What became of one file: its line for the output, or the reason why there is none.
struct FileOutcome {
    bool isSuccess = false;
    std::string text;
};

/// Jobs that run side by side and are reported in the order of their numbers, each as soon as all
/// before it are.
struct InOrder {
    using Done = std::function<void(FileOutcome)>;

    std::size_t count = 0; ///< jobs are numbered from 0
    /// Jobs that are started and not yet reported, at most; bounds what waits in memory.
    std::size_t window = 1;
    /// Starts a job. `done` runs on the loop's thread, once, not before this returns.
    std::function<Task(std::size_t job, Done done)> start;
    /// Whether to go on.
    std::function<bool(std::size_t job, FileOutcome const& outcome)> report;

    /// Returns when the last job is reported, or when there is no use in going on; jobs under way
    /// are dropped then.
    void run(ConsoleLoop& loop) const;
};

/// Runs `start` for each of the files, `jobs` of which are worked on side by side; prints the lines
/// of those that succeed and complains of the others. Ends early when nothing can be printed.
[[nodiscard]] ExitCode runForFiles(std::span<std::string_view const> files, std::size_t jobs,
    std::function<Task(std::size_t file, InOrder::Done done)> start, ConsoleLoop& loop,
    CommandContext const& context);

} // namespace pixelhain
