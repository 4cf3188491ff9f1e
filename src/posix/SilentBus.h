#pragma once
#include <chrono>
#include <string_view>

namespace pixelhain {

/// Whether somebody listens at this D-Bus address who says nothing to whoever greets it within
/// `patience`, as a bus that is stopped does. False where nobody listens, and for ways to a bus
/// other than sockets of this machine. Waits.
[[nodiscard]] bool isSilentBus(std::string_view address, std::chrono::milliseconds patience);

} // namespace pixelhain
