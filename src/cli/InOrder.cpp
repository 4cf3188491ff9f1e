#include "cli/InOrder.h"
#include "cli/ConsoleLoop.h"
#include <deque>
#include <optional>
#include <utility>

namespace pixelhain {

namespace {

struct StartedJob {
    Task task;
    std::optional<FileOutcome> outcome;
};

} // namespace

void InOrder::run(ConsoleLoop& loop) const
{
    std::size_t reported = 0;
    std::deque<StartedJob> started; // the first is job number `reported`
    auto const startMore = [&] {
        while (started.size() < window && reported + started.size() < count) {
            auto const job = reported + started.size();
            started.emplace_back();
            started.back().task = start(job, [&started, &reported, job](FileOutcome outcome) {
                started.at(job - reported).outcome = std::move(outcome);
            });
        }
    };
    startMore();
    loop.runUntil([&] {
        for (; !started.empty() && started.front().outcome; ++reported) {
            if (!report(reported, *started.front().outcome))
                return true;
            started.pop_front();
        }
        startMore();
        return reported == count;
    });
}

ExitCode runForFiles(std::span<std::string_view const> files, std::size_t jobs,
    std::function<Task(std::size_t file, InOrder::Done done)> start, ConsoleLoop& loop,
    CommandContext const& context)
{
    auto code = ExitCode::success;
    InOrder inOrder;
    inOrder.count = files.size();
    // Enough that a slow file does not hold up the rest, few enough that their pictures need
    // little memory.
    inOrder.window = 2 * jobs + 2;
    inOrder.start = std::move(start);
    inOrder.report = [&](std::size_t file, FileOutcome const& outcome) {
        if (outcome.isSuccess) {
            context.out.write(outcome.text);
            context.out.write("\n");
            // Whoever reads along waits for each line.
            return context.out.flush();
        }
        context.complain(files[file], outcome.text);
        code = ExitCode::failure;
        return true;
    };
    inOrder.run(loop);
    return code;
}

} // namespace pixelhain
