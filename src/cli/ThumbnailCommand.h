#pragma once
#include "cli/Command.h"

namespace pixelhain {

/// Decodes pictures as the gallery does, or as the viewer does, through the same loader.
Command const& thumbnailCommand();

} // namespace pixelhain
