#include "qt/app/TerminationSignals.h"
#include "qt/Wait.h"
#include <csignal>
#include <doctest/doctest.h>
#include <unistd.h>

using namespace pixelhain;

TEST_CASE("a signal to end becomes a call, also one that came before anybody listened")
{
    sigset_t before;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &before);
    TerminationSignals::hold();
    // To this thread: threads that were there before let signals through.
    ::pthread_kill(::pthread_self(), SIGTERM);
    int asked = 0;
    {
        TerminationSignals const endings([&] { ++asked; });
        CHECK(asked == 0);
        CHECK(eventually([&] { return asked == 1; }));
        ::pthread_kill(::pthread_self(), SIGHUP);
        CHECK(eventually([&] { return asked == 2; }));
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}
