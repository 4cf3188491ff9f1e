#include "cli/Command.h"

namespace pixelhain {

void CommandContext::complain(std::string_view operand, std::string_view reason) const
{
    err.write("pixelhain-cli: ");
    err.write(operand);
    err.write(": ");
    err.write(reason);
    err.write("\n");
    // What cannot be said on the error stream cannot be said at all; the exit code still tells.
    static_cast<void>(err.flush());
}

FileUrl CommandContext::place(std::string_view operand) const
{
    auto const absolute = operand.starts_with('/') ? std::string(operand)
                                                   : workingFolder + '/' + std::string(operand);
    return FileUrl(absolute).standardized();
}

} // namespace pixelhain
