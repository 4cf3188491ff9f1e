#include "cli/MetaCommand.h"
#include "cli/CommandLoader.h"
#include "cli/InOrder.h"
#include <string>
#include <utility>

namespace pixelhain {

namespace {

FileOutcome outcomeOf(std::string_view path, std::optional<ImageMeta> const& meta)
{
    if (!meta)
        return { false, "cannot be read" };
    std::string line(path);
    if (meta->size) {
        line += '\t' + std::to_string(meta->size->width);
        line += '\t' + std::to_string(meta->size->height);
    } else {
        line += "\t-\t-";
    }
    return { true, line += meta->isAnimated ? "\tanimated" : "\tstill" };
}

std::optional<Failure> check(Arguments const& arguments)
{
    if (arguments.operands().empty())
        return Failure { "no file given" };
    return std::nullopt;
}

ExitCode run(Arguments const& arguments, CommandContext const& context)
{
    auto const& files = arguments.operands();
    CommandLoader desk(usualJobs(), defaultDisplayPixelSize);
    auto const start = [&](std::size_t file, InOrder::Done done) {
        return desk.loader.loadMeta(context.place(files[file]),
            [path = files[file], done = std::move(done)](
                std::optional<ImageMeta> const& meta) { done(outcomeOf(path, meta)); });
    };
    return runForFiles(files, usualJobs(), start, desk.loop, context);
}

} // namespace

Command const& metaCommand()
{
    static constexpr Command command {
        .name = "meta",
        .usage = "FILE…",
        .summary = "Print size and kind of image files without decoding them.",
        .details
        = "Prints path, width, height and animated or still, separated by tabs, \"-\" for\n"
          "what a file does not state.\n",
        .options = {},
        .check = check,
        .run = run,
    };
    return command;
}

} // namespace pixelhain
