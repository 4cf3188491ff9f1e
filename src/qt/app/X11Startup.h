#pragma once
#include <cstdint>
#include <string>

namespace pixelhain {

/// Asks an X11 window manager to bring the window to the front as the outcome of the start with
/// this id, at the time when a person asked for it, and says that this start is complete. Returns
/// false, and does nothing, on other displays.
bool activateByStartupId(std::uintptr_t window, std::string const& id, std::uint32_t time);

} // namespace pixelhain
