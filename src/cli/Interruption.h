#pragma once
#include "base/CancelFlag.h"
#include "posix/Descriptor.h"
#include <atomic>
#include <csignal>
#include <thread>

namespace pixelhain {

/// While it lives, a request to end the program (Ctrl+C, a terminal that closes, SIGTERM) sets the
/// flag instead, so that work can be taken back first; a second one ends the program at once. To
/// be made before any thread of the work.
class Interruption {
public:
    explicit Interruption(CancelFlag& flag);
    Interruption(Interruption const&) = delete;
    Interruption& operator=(Interruption const&) = delete;
    ~Interruption();

    /// The signal that came; 0: none.
    [[nodiscard]] int signal() const { return signal_; }

    /// Ends the program as the signal would have.
    [[noreturn]] static void endBy(int signal);

private:
    void listen();

    CancelFlag& flag_;
    sigset_t before_ {};
    Descriptor signals_;
    Descriptor stop_;
    std::atomic<int> signal_ = 0;
    std::thread listener_;
};

} // namespace pixelhain
