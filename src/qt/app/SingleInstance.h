#pragma once
#include "posix/LifetimeLock.h"
#include "qt/app/OpenRequest.h"
#include <chrono>
#include <memory>
#include <optional>

namespace pixelhain {

class ApplicationService;

/// Makes this the one running program of the desktop session, or finds the one that is.
///
/// Who owns the name on the session bus is that one. The bus is asked on a thread of its own while
/// the toolkit starts. That answer is waited for only where a mark in the runtime folder says that
/// another one probably runs; who starts alone does not notice a bus that is slow.
class SingleInstance {
public:
    /// How long a start waits in all, for the bus and for a running program.
    static constexpr std::chrono::seconds patience { 2 };

    /// Asks for the name. `service`, which belongs to the main thread, is what others find under
    /// it; it must live as long as the process.
    explicit SingleInstance(ApplicationService& service);

    /// Leaves the bus, and with it the name, unless the bus has not answered yet.
    ~SingleInstance();
    SingleInstance(SingleInstance const&) = delete;
    SingleInstance& operator=(SingleInstance const&) = delete;

    /// Hands the request to the program that runs already; false if there is none, it is about to
    /// end or does not answer, or nobody knows yet. Who could not hand over is the next to have the
    /// name, once the other has gone. Returns at once unless there is, or probably is, another one.
    /// May be called again: all calls together wait no longer than `patience`. A program that hung
    /// may still do what it was asked when it comes round.
    [[nodiscard]] bool handOver(OpenRequest const& request);

private:
    using Clock = std::chrono::steady_clock;
    struct Answer;

    [[nodiscard]] bool isTaken(OpenRequest const& request, Clock::time_point deadline) const;

    Clock::duration patienceLeft_ = patience;
    std::optional<LifetimeLock> mark_;
    std::shared_ptr<Answer> answer_;
};

} // namespace pixelhain
