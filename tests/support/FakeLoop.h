#pragma once
#include "ports/MainLoop.h"
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

namespace pixelhain {

/// A main loop whose clock moves only when a test moves it. Posting is allowed from any thread.
class FakeLoop final : public MainLoop {
public:
    FakeLoop();
    ~FakeLoop() override;

    void post(Work work) override;

    Task after(std::chrono::milliseconds delay, Work work) override;

    /// Runs what was posted, including what that posts in turn.
    void settle();

    /// What was posted and has not run.
    std::size_t pending();

    /// Waits until another thread has posted something.
    void awaitPost();

    /// Lets time pass, firing every timer at its own moment.
    void advance(std::chrono::milliseconds by);

    /// The clock.
    std::chrono::milliseconds now() const { return now_; }

    /// Timers that have not fired.
    std::size_t timers() const { return timers_->size(); }

private:
    using Timers = std::multimap<std::chrono::milliseconds, std::shared_ptr<Work>>;

    Work next();

    std::mutex lock_;
    std::condition_variable posting_;
    std::chrono::milliseconds now_ { 0 };
    std::deque<Work> posted_;
    std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();
};

} // namespace pixelhain
