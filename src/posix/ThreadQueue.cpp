#include "posix/ThreadQueue.h"
#include <algorithm>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace pixelhain {

ThreadQueue::ThreadQueue(std::size_t width, int niceness)
    : width_(std::max<std::size_t>(width, 1))
    , niceness_(niceness)
{
}

ThreadQueue::~ThreadQueue()
{
    std::deque<std::function<void()>> dropped;
    {
        std::scoped_lock const guard(lock_);
        stopping_ = true;
        dropped.swap(items_);
    }
    wake_.notify_all();
    // Whatever the dropped items hold may be what a running one waits for.
    dropped.clear();
    for (auto& thread : threads_)
        thread.join();
}

void ThreadQueue::add(std::function<void()> item)
{
    std::scoped_lock const guard(lock_);
    if (stopping_)
        return;
    items_.push_back(std::move(item));
    if (idle_ >= items_.size() || threads_.size() == width_) {
        wake_.notify_one();
        return;
    }
    try {
        threads_.emplace_back([this] { work(); });
    } catch (std::system_error const&) {
        // At the limit of threads those that are there do the work; with none there is no way on.
        if (threads_.empty())
            throw;
    }
}

void ThreadQueue::work()
{
    // On Linux this is the priority of the calling thread alone. It can only be lowered, which is
    // why every priority has threads of its own.
    if (niceness_ != 0) {
        int const own = ::getpriority(PRIO_PROCESS, 0);
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), own + niceness_);
    }
    std::unique_lock guard(lock_);
    for (;;) {
        ++idle_;
        wake_.wait(guard, [this] { return stopping_ || !items_.empty(); });
        --idle_;
        if (stopping_)
            return;
        {
            auto const item = std::move(items_.front());
            items_.pop_front();
            guard.unlock();
            item();
        }
        guard.lock();
    }
}

} // namespace pixelhain
