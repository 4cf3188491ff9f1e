#pragma once
#include "cli/Command.h"

namespace pixelhain {

/// Prints what is known of photos, in the lines that the viewer shows.
Command const& infoCommand();

} // namespace pixelhain
