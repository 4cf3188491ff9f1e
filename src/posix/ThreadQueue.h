#pragma once
#include "ports/WorkQueue.h"
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace pixelhain {

/// A work queue on threads of its own, which begin when there is work for them. Its destructor
/// waits for the items that run and drops those that have not begun.
class ThreadQueue final : public WorkQueue {
public:
    /// At most `width` items side by side, at least one. `niceness` is taken off the threads'
    /// share of the processors: 0 is the usual share, 19 what nobody else wants.
    explicit ThreadQueue(std::size_t width, int niceness = 0);
    ~ThreadQueue() override;
    ThreadQueue(ThreadQueue const&) = delete;
    ThreadQueue& operator=(ThreadQueue const&) = delete;

    void add(std::function<void()> item) override;

private:
    void work();

    std::size_t const width_;
    int const niceness_;
    std::mutex lock_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> items_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool stopping_ = false;
};

} // namespace pixelhain
