#pragma once
#include "ports/MainLoop.h"
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace pixelhain {

/// The main loop of a program without a window: the thread that runs it sleeps until there is
/// something to do.
class ConsoleLoop final : public MainLoop {
public:
    void post(Work work) override;
    [[nodiscard]] Task after(std::chrono::milliseconds delay, Work work) override;

    /// Runs what is posted and what falls due until `isDone`, which is asked after each piece.
    void runUntil(std::function<bool()> const& isDone);

private:
    using Clock = std::chrono::steady_clock;
    using Timers = std::multimap<Clock::time_point, std::shared_ptr<Work>>;

    Work next();

    std::mutex lock_;
    std::condition_variable posted_;
    std::deque<Work> work_;
    std::shared_ptr<Timers> timers_ = std::make_shared<Timers>(); // of the main thread
};

} // namespace pixelhain
