#include "decoder/ProcessorAlarm.h"
#include <sys/time.h>

namespace pixelhain {

namespace {

// At its end comes a signal that nobody handles, which ends the process.
void setTimer(std::chrono::microseconds time)
{
    auto const seconds = std::chrono::floor<std::chrono::seconds>(time);
    itimerval timer {};
    timer.it_value = { seconds.count(), std::chrono::microseconds(time - seconds).count() };
    ::setitimer(ITIMER_PROF, &timer, nullptr);
}

} // namespace

ProcessorAlarm::ProcessorAlarm(std::chrono::microseconds time)
{
    setTimer(time);
}

ProcessorAlarm::~ProcessorAlarm()
{
    setTimer({});
}

} // namespace pixelhain
