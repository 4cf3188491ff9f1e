#include "decoder/ProcessorAlarm.h"
#include "decoder/Lockdown.h"
#include "support/ForkedRun.h"
#include "support/Sanitizers.h"
#include <csignal>
#include <ctime>
#include <doctest/doctest.h>
#include <thread>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// Until this process has used so much processor time since it began.
void workUntil(double seconds)
{
    while (static_cast<double>(std::clock()) / CLOCKS_PER_SEC < seconds) { }
}

} // namespace

// A copy of a process with threads may not start any under its sanitizer.
TEST_SUITE_BEGIN("alarms" * doctest::skip(isThreadSanitized));

TEST_CASE("a process that works on and on ends when its alarm says so")
{
    for (bool const isLocked : { false, true }) {
        CAPTURE(isLocked);
        auto const ending = runForked([&] {
            if (isLocked && !lockDown({}).has(Lockdown::systemCalls))
                return 1;
            ProcessorAlarm const alarm(50ms);
            for (;;)
                workUntil(3600);
        });
        CHECK(ending.signal == SIGPROF);
    }
}

TEST_CASE("the work of all threads counts")
{
    auto const ending = runForked([] {
        ProcessorAlarm const alarm(50ms);
        std::jthread const busy([] { workUntil(3600); });
        ::pause();
        return 0;
    });
    CHECK(ending.signal == SIGPROF);
}

TEST_CASE("an alarm that is over ends nothing, and the next one counts from the beginning")
{
    auto const ending = runForked([] {
        for (int i = 1; i <= 4; ++i) {
            ProcessorAlarm const alarm(300ms);
            workUntil(0.15 * i);
        }
        workUntil(1.2);
        return 7;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code == 7);
}

TEST_SUITE_END();
