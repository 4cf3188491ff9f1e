#pragma once
#include "base/Task.h"
#include <cstddef>
#include <functional>
#include <string>

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
    std::function<void(std::size_t job, FileOutcome const& outcome)> report;

    /// Returns when the last job is reported.
    void run(ConsoleLoop& loop) const;
};

} // namespace pixelhain
