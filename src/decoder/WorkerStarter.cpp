#include "decoder/WorkerStarter.h"
#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <system_error>
#include <utility>

namespace pixelhain {

namespace {

// How long the destructor waits for workers that were killed. The kernel needs microseconds; one
// that hangs in it is not waited for.
constexpr int lastWaitMilliseconds = 1000;

void lowerOwnPriority(int niceness)
{
    if (niceness == 0)
        return;
    int const own = ::getpriority(PRIO_PROCESS, 0);
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), own + niceness);
}

Descriptor newWake()
{
    Descriptor wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!wake)
        throw std::system_error(errno, std::generic_category());
    return wake;
}

} // namespace

WorkerStarter::WorkerStarter(std::string program, int niceness)
    : program_(std::move(program))
    , environment_(workerEnvironment())
    , niceness_(niceness)
    , wake_(newWake())
    , thread_([this] { work(); })
{
}

void WorkerStarter::stop()
{
    if (!thread_.joinable())
        return;
    {
        std::scoped_lock const guard(lock_);
        isStopping_ = true;
    }
    ::eventfd_write(wake_.get(), 1);
    thread_.join();
}

void WorkerStarter::start(std::uint64_t addressSpace, Done done)
{
    {
        std::scoped_lock const guard(lock_);
        orders_.push_back({ addressSpace, std::move(done) });
    }
    ::eventfd_write(wake_.get(), 1);
}

void WorkerStarter::bury(std::unique_ptr<WorkerProcess> worker)
{
    worker->kill();
    {
        std::scoped_lock const guard(lock_);
        buried_.push_back(std::move(worker));
    }
    ::eventfd_write(wake_.get(), 1);
}

void WorkerStarter::work()
{
    lowerOwnPriority(niceness_);
    for (;;) {
        {
            std::scoped_lock const guard(lock_);
            if (isStopping_)
                break;
        }
        takeOrders();
        forgetTheDead();
        waitForSomething();
    }
    forgetTheDead();
    for (auto const& worker : dying_) {
        pollfd end { worker->endDescriptor(), POLLIN, 0 };
        ::poll(&end, 1, lastWaitMilliseconds);
    }
    forgetTheDead();
}

void WorkerStarter::waitForSomething()
{
    std::vector<pollfd> watched { { wake_.get(), POLLIN, 0 } };
    for (auto const& worker : dying_)
        watched.push_back({ worker->endDescriptor(), POLLIN, 0 });
    ::poll(watched.data(), watched.size(), -1);
    eventfd_t ignored = 0;
    ::eventfd_read(wake_.get(), &ignored);
}

void WorkerStarter::takeOrders()
{
    for (;;) {
        Order order;
        {
            std::scoped_lock const guard(lock_);
            if (isStopping_ || orders_.empty())
                return;
            order = std::move(orders_.front());
            orders_.pop_front();
        }
        order.done(WorkerProcess::start({ program_, order.addressSpace, environment_ }));
    }
}

void WorkerStarter::forgetTheDead()
{
    {
        std::scoped_lock const guard(lock_);
        std::move(buried_.begin(), buried_.end(), std::back_inserter(dying_));
        buried_.clear();
    }
    std::erase_if(dying_, [](auto const& worker) { return worker->isGone(); });
}

} // namespace pixelhain
