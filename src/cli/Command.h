#pragma once
#include "base/FileUrl.h"
#include "cli/Arguments.h"
#include "cli/Output.h"
#include <span>
#include <string>
#include <string_view>

namespace pixelhain {

enum class ExitCode {
    success = 0,
    failure = 1, ///< on any file; the others were done
    usage = 2, ///< nothing was done
};

/// What a command runs with.
struct CommandContext {
    Output& out;
    Output& err;
    std::string workingFolder; ///< absolute; relative operands begin here

    /// Names a file or folder that failed on `err`, at once.
    void complain(std::string_view operand, std::string_view reason) const;

    /// Where an operand points.
    [[nodiscard]] FileUrl place(std::string_view operand) const;
};

/// One subcommand.
struct Command {
    std::string_view name;
    std::string_view usage; ///< what follows the name in the usage line
    std::string_view summary; ///< one line
    std::string_view details; ///< the options, one a line
    std::span<Option const> options;

    /// The rule that options and operands must keep; nothing if they do.
    std::optional<Failure> (*check)(Arguments const& arguments);

    /// Does the work. Called only with arguments that passed `check`.
    ExitCode (*run)(Arguments const& arguments, CommandContext const& context);
};

} // namespace pixelhain
