#pragma once
#include "decoder/WorkerProcess.h"
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace pixelhain {

/// Starts workers and sees to it that none is left. All start from one thread that lives as long as
/// this, because a worker ends with the thread that started it.
class WorkerStarter {
public:
    using Done = std::function<void(WorkerProcess::Started)>;

    /// `niceness` is what its workers have at first, besides that of the program. Throws
    /// std::system_error where there is no thread or no descriptor for it.
    WorkerStarter(std::string program, int niceness);
    WorkerStarter(WorkerStarter const&) = delete;
    WorkerStarter& operator=(WorkerStarter const&) = delete;
    ~WorkerStarter() { stop(); }

    /// Ends every worker that was given back, those included that come in meanwhile. `done` is not
    /// called any more when this returns.
    void stop();

    /// Any thread, never waits; `done` runs on the starter's thread.
    void start(std::uint64_t addressSpace, Done done);
    /// Kills it and forgets it once it is gone; one that hangs in the kernel is left behind.
    void bury(std::unique_ptr<WorkerProcess> worker);

private:
    struct Order {
        std::uint64_t addressSpace = 0;
        Done done;
    };

    void work();
    void waitForSomething();
    void takeOrders();
    void forgetTheDead();

    std::string const program_;
    std::vector<std::string> const environment_;
    int const niceness_;
    Descriptor wake_;
    std::mutex lock_;
    std::deque<Order> orders_;
    std::vector<std::unique_ptr<WorkerProcess>> buried_;
    bool isStopping_ = false;
    std::vector<std::unique_ptr<WorkerProcess>> dying_; // the thread's own
    std::thread thread_; // last: works with all of the above
};

} // namespace pixelhain
