#pragma once
#include "cli/Command.h"
#include <span>
#include <string_view>

namespace pixelhain {

/// Runs the command that `words` (without the program's name) ask for, and flushes what it prints.
/// A command whose output cannot be written has failed.
[[nodiscard]] ExitCode runCommandLine(
    std::span<std::string_view const> words, CommandContext const& context);

} // namespace pixelhain
