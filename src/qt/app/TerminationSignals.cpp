#include "qt/app/TerminationSignals.h"
#include <csignal>
#include <sys/signalfd.h>
#include <utility>

namespace pixelhain {

namespace {

sigset_t terminationSignals()
{
    sigset_t set;
    ::sigemptyset(&set);
    for (int const signal : { SIGTERM, SIGINT, SIGHUP })
        ::sigaddset(&set, signal);
    return set;
}

Descriptor newSignalDescriptor()
{
    auto const set = terminationSignals();
    return Descriptor(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
}

} // namespace

void TerminationSignals::hold()
{
    auto const set = terminationSignals();
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> ask)
    : ask_(std::move(ask))
    , signals_(newSignalDescriptor())
    , notifier_(signals_.get(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { read(); });
}

void TerminationSignals::read() const
{
    signalfd_siginfo info {};
    while (::read(signals_.get(), &info, sizeof info) == sizeof info)
        ask_();
}

} // namespace pixelhain
