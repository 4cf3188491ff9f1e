#pragma once
#include "posix/Descriptor.h"
#include <QSocketNotifier>
#include <functional>

namespace pixelhain {

/// Turns the signals by which a session or a terminal asks the program to end into a call on the
/// main thread.
class TerminationSignals {
public:
    /// Keeps the signals from ending the process. To be called before there is a second thread: all
    /// threads inherit it.
    static void hold();

    /// From now on `ask` is called for each signal, those included that came since `hold`.
    explicit TerminationSignals(std::function<void()> ask);

private:
    void read() const;

    std::function<void()> ask_;
    Descriptor signals_;
    QSocketNotifier notifier_;
};

} // namespace pixelhain
