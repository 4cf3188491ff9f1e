#include "cli/CommandLine.h"
#include "base/Text.h"
#include "cli/ContactSheetCommand.h"
#include "cli/InfoCommand.h"
#include "cli/ListCommand.h"
#include "cli/MetaCommand.h"
#include "cli/ThumbnailCommand.h"
#include <algorithm>

namespace pixelhain {

namespace {

using Words = std::span<std::string_view const>;

// A new command is one line here.
std::vector<Command const*> commands()
{
    return { &listCommand(), &metaCommand(), &infoCommand(), &thumbnailCommand(),
        &contactSheetCommand() };
}

void printUsage(Command const& command, Output& to)
{
    for (auto const text : { std::string_view("Usage: pixelhain-cli "), command.name,
             std::string_view(" "), command.usage, std::string_view("\n") })
        to.write(text);
}

void printHelp(Command const& command, Output& to)
{
    printUsage(command, to);
    for (auto const text : { command.summary, std::string_view("\n"), command.details })
        to.write(text);
}

void printOverview(Output& to)
{
    to.write("Usage: pixelhain-cli COMMAND …\n"
             "       pixelhain-cli --help | --version\n");
    for (auto const* const command : commands()) {
        std::string line = "  ";
        line += command->name;
        line.resize(std::max<std::size_t>(line.size() + 2, 17), ' ');
        line += command->summary;
        to.write(line + "\n");
    }
    to.write("pixelhain-cli COMMAND --help tells more.\n"
             "Exit codes: 0 all done, 1 something failed (named on stderr), 2 wrong usage.\n");
}

bool isHelp(std::string_view word)
{
    return word == "--help" || word == "-h";
}

bool asksForHelp(Words words)
{
    auto const end = std::ranges::find(words, "--");
    return std::any_of(words.begin(), end, isHelp);
}

ExitCode runCommand(Command const& command, Words words, CommandContext const& context)
{
    if (asksForHelp(words)) {
        printHelp(command, context.out);
        return ExitCode::success;
    }
    auto const parsed = Arguments::parse(words, command.options);
    auto const* const arguments = std::get_if<Arguments>(&parsed);
    auto const wrong = arguments ? command.check(*arguments) : std::get<Failure>(parsed);
    if (wrong) {
        context.complain(command.name, wrong->reason);
        printUsage(command, context.err);
        return ExitCode::usage;
    }
    return command.run(*arguments, context);
}

ExitCode dispatch(Words words, CommandContext const& context)
{
    if (words.empty()) {
        printOverview(context.err);
        return ExitCode::usage;
    }
    if (isHelp(words.front())) {
        printOverview(context.out);
        return ExitCode::success;
    }
    if (words.front() == "--version") {
        context.out.write("pixelhain-cli " PIXELHAIN_VERSION "\n");
        return ExitCode::success;
    }
    for (auto const* const command : commands())
        if (command->name == words.front())
            return runCommand(*command, words.subspan(1), context);
    context.complain(displayText(words.front()), "unknown command");
    printOverview(context.err);
    return ExitCode::usage;
}

} // namespace

ExitCode runCommandLine(Words words, CommandContext const& context)
{
    auto code = dispatch(words, context);
    if (!context.out.flush()) {
        context.complain("standard output", context.out.reason());
        code = ExitCode::failure;
    }
    static_cast<void>(context.err.flush());
    return code;
}

} // namespace pixelhain
