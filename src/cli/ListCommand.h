#pragma once
#include "cli/Command.h"

namespace pixelhain {

/// Prints the paths that the gallery would show, in its order.
Command const& listCommand();

} // namespace pixelhain
