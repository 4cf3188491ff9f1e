#pragma once
#include "ports/Background.h"
#include "posix/ThreadQueue.h"

namespace pixelhain {

/// Background work on threads. Each priority has its own, so that waiting work of a low one never
/// holds up a higher one; utility work also takes a smaller share of the processors.
class ThreadPool final : public Background {
public:
    ThreadPool();

    void run(Priority priority, std::function<void()> work) override;

private:
    ThreadQueue utility_;
    ThreadQueue userInitiated_;
    ThreadQueue userInteractive_;
};

} // namespace pixelhain
