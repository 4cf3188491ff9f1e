#pragma once
#include <chrono>
#include <cstdint>

namespace pixelhain {

/// A moment of the wall clock, nanoseconds since 1970-01-01 UTC.
using Timestamp = std::chrono::sys_time<std::chrono::nanoseconds>;

/// The earliest representable moment: stands for an unknown date and sorts before every known one.
inline constexpr Timestamp distantPast = Timestamp::min();

} // namespace pixelhain
