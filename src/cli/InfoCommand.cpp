#include "cli/InfoCommand.h"
#include "cli/ConsoleLoop.h"
#include "cli/InOrder.h"
#include "decoder/ChosenDecoder.h"
#include "decoder/InProcessDecoder.h"
#include "icu/IcuTextFormats.h"
#include "images/InfoLines.h"
#include "model/PhotoItem.h"
#include "ports/ImageDecoder.h"
#include "posix/ThreadPool.h"
#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <utility>

namespace pixelhain {

namespace {

// Enough to read while another waits for the disk.
constexpr std::size_t jobs = 2;

std::optional<Failure> check(Arguments const& arguments)
{
    if (arguments.operands().empty())
        return Failure { "no file given" };
    return std::nullopt;
}

// What a file says may hold what moves the cursor of a terminal, or ends a line.
std::string printable(std::string line)
{
    auto const isControl = [](unsigned char letter) { return letter < ' ' || letter == 0x7F; };
    std::ranges::replace_if(line, isControl, '?');
    return line;
}

FileOutcome outcomeOf(PhotoItem const& item, std::optional<PhotoProperties> const& properties,
    TextFormats const& formats)
{
    if (!properties)
        return { false, "cannot be read" };
    std::string text;
    for (auto& line : infoLines(item, properties, formats))
        text += printable(std::move(line)) + '\n';
    text.pop_back();
    return { true, std::move(text) };
}

// A link that is named stands for its file.
PhotoItem itemAt(FileUrl const& url)
{
    PhotoItem item { url };
    struct stat status { };
    if (::stat(url.cString(), &status) == 0) {
        item.date = Timestamp(std::chrono::seconds(status.st_mtim.tv_sec)
            + std::chrono::nanoseconds(status.st_mtim.tv_nsec));
        item.size = status.st_size;
    }
    return item;
}

ExitCode run(Arguments const& arguments, CommandContext const& context)
{
    auto const& files = arguments.operands();
    auto const decoder
        = chosenDecoder({ .width = jobs, .first = 1, .inProcess = inProcessDecoder });
    IcuTextFormats const formats(formatLocales(::getenv));
    ConsoleLoop loop;
    ThreadPool background;
    bool isFirst = true;
    auto const start = [&](std::size_t file, InOrder::Done done) {
        return runThen(
            background, loop, Priority::userInitiated,
            [&, url = context.place(files[file])] {
                return outcomeOf(itemAt(url), decoder->readProperties(url), formats);
            },
            std::move(done));
    };
    auto code = ExitCode::success;
    InOrder inOrder;
    inOrder.count = files.size();
    inOrder.window = 2 * jobs;
    inOrder.start = start;
    inOrder.report = [&](std::size_t file, FileOutcome const& outcome) {
        if (!outcome.isSuccess) {
            context.complain(files[file], outcome.text);
            code = ExitCode::failure;
            return true;
        }
        if (!std::exchange(isFirst, false))
            context.out.write("\n");
        context.out.write(outcome.text);
        context.out.write("\n");
        return context.out.flush();
    };
    inOrder.run(loop);
    return code;
}

} // namespace

Command const& infoCommand()
{
    static constexpr Command command {
        .name = "info",
        .usage = "FILE…",
        .summary = "Print what is known of photos: size, date, camera, lens, exposure.",
        .details
        = "Prints the lines that the viewer shows, in the user's language, with an empty line\n"
          "between files.\n",
        .options = {},
        .check = check,
        .run = run,
    };
    return command;
}

} // namespace pixelhain
