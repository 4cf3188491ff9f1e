#pragma once
#include <chrono>

namespace pixelhain {

/// Ends the process once its threads have used this much processor time while one of these lives.
/// One at a time.
class ProcessorAlarm {
public:
    explicit ProcessorAlarm(std::chrono::microseconds time);
    ProcessorAlarm(ProcessorAlarm const&) = delete;
    ProcessorAlarm& operator=(ProcessorAlarm const&) = delete;
    ~ProcessorAlarm();
};

} // namespace pixelhain
