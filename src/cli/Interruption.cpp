#include "cli/Interruption.h"
#include "posix/FolderHandle.h"
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace pixelhain {

namespace {

sigset_t endings()
{
    sigset_t set;
    ::sigemptyset(&set);
    for (int const signal : { SIGINT, SIGTERM, SIGHUP })
        ::sigaddset(&set, signal);
    return set;
}

} // namespace

Interruption::Interruption(CancelFlag& flag)
    : flag_(flag)
{
    auto const set = endings();
    ::pthread_sigmask(SIG_BLOCK, &set, &before_);
    signals_ = Descriptor(::signalfd(-1, &set, SFD_CLOEXEC));
    stop_ = Descriptor(::eventfd(0, EFD_CLOEXEC));
    listener_ = std::thread([this] { listen(); });
}

Interruption::~Interruption()
{
    std::uint64_t const one = 1;
    [[maybe_unused]] auto const told
        = uninterrupted([&] { return ::write(stop_.get(), &one, sizeof one); });
    listener_.join();
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interruption::listen()
{
    pollfd sources[] = { { signals_.get(), POLLIN, 0 }, { stop_.get(), POLLIN, 0 } };
    while (true) {
        if (::poll(sources, 2, -1) < 0)
            continue;
        if (sources[1].revents != 0)
            return;
        signalfd_siginfo info {};
        if (::read(signals_.get(), &info, sizeof info) != sizeof info)
            continue;
        auto const signal = static_cast<int>(info.ssi_signo);
        if (signal_ != 0)
            endBy(signal);
        signal_ = signal;
        flag_.set();
    }
}

void Interruption::endBy(int signal)
{
    std::signal(signal, SIG_DFL);
    auto const set = endings();
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    std::raise(signal);
    std::_Exit(128 + signal); // of a signal that somebody ignores
}

} // namespace pixelhain
