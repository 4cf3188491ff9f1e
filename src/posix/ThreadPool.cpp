#include "posix/ThreadPool.h"
#include <algorithm>
#include <thread>
#include <utility>

namespace pixelhain {

namespace {

constexpr int utilityNiceness = 10;

// Two at least, so that one piece of work that waits for a slow disk does not hold up the rest.
std::size_t width()
{
    return std::max(2U, std::thread::hardware_concurrency());
}

} // namespace

ThreadPool::ThreadPool()
    : utility_(width(), utilityNiceness)
    , userInitiated_(width())
    , userInteractive_(width())
{
}

void ThreadPool::run(Priority priority, std::function<void()> work)
{
    switch (priority) {
    case Priority::utility:
        utility_.add(std::move(work));
        break;
    case Priority::userInitiated:
        userInitiated_.add(std::move(work));
        break;
    case Priority::userInteractive:
        userInteractive_.add(std::move(work));
        break;
    }
}

} // namespace pixelhain
