#pragma once
#include "posix/LifetimeLock.h"
#include "qt/app/OpenRequest.h"
#include <chrono>
#include <memory>

namespace pixelhain {

class ApplicationService;

/// Makes this the one running program of the desktop session, or finds the one that is.
///
/// Who owns the name on the session bus is that one. The bus is asked on a thread of its own while
/// the toolkit starts, and nobody waits for it: a bus that does not answer costs nothing. Only
/// where a mark in the runtime folder says that another one probably runs is the answer waited for.
class SingleInstance {
public:
    /// How long a running program may take to answer.
    static constexpr std::chrono::seconds patience { 2 };

    /// Asks for the name. `service`, which belongs to the main thread, is what others find under
    /// it; it must live as long as the process.
    explicit SingleInstance(ApplicationService& service);

    /// Gives the name back, if it was given.
    ~SingleInstance();
    SingleInstance(SingleInstance const&) = delete;
    SingleInstance& operator=(SingleInstance const&) = delete;

    /// Hands the request to the program that runs already; false if there is none, it does not
    /// answer, or nobody knows yet. Returns at once unless there is, or probably is, another one.
    [[nodiscard]] bool handOver(OpenRequest const& request) const;

private:
    struct Answer;

    std::optional<LifetimeLock> mark_;
    std::shared_ptr<Answer> answer_;
};

} // namespace pixelhain
