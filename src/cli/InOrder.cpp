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
            report(reported, *started.front().outcome);
            started.pop_front();
        }
        startMore();
        return reported == count;
    });
}

} // namespace pixelhain
