#pragma once
#include "cli/Command.h"

namespace pixelhain {

/// Writes a PDF of thumbnails, as the window program does.
Command const& contactSheetCommand();

} // namespace pixelhain
