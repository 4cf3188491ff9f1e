#pragma once
#include "cli/Command.h"

namespace pixelhain {

/// Prints what is known of image files before they are decoded.
Command const& metaCommand();

} // namespace pixelhain
