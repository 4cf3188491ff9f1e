#include "cli/ListCommand.h"
#include "codecs/ImageCodecs.h"
#include "icu/IcuTextOrder.h"
#include "model/PhotoTest.h"
#include "model/Scanning.h"
#include "model/SortKey.h"
#include "posix/FolderHandle.h"
#include "posix/PosixFileSystem.h"
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <vector>

namespace pixelhain {

namespace {

constexpr auto options = std::to_array<Option>({
    { "--recursive" },
    { "--sort", OptionValue::required },
    { "--descending" },
    { "--filter", OptionValue::required },
    { "-0" },
});

std::optional<Failure> check(Arguments const& arguments)
{
    auto const sort = arguments.value("--sort").value_or("name");
    if (rawValue(sortKeyFromRawValue(sort)) != sort)
        return Failure { "--sort takes name, date or size" };
    if (arguments.operands().empty())
        return Failure { "no folder given" };
    return std::nullopt;
}

// Why a folder cannot be listed, in the system's words; nothing if it can.
std::optional<std::string> whyUnreadable(FileUrl const& folder)
{
    if (openFolder(folder.path(), O_RDONLY))
        return std::nullopt;
    return std::generic_category().message(errno);
}

ExitCode run(Arguments const& arguments, CommandContext const& context)
{
    auto code = ExitCode::success;
    std::vector<FileUrl> folders;
    for (auto const operand : arguments.operands()) {
        auto const folder = context.place(operand);
        if (auto const reason = whyUnreadable(folder)) {
            context.complain(operand, *reason);
            code = ExitCode::failure;
        } else {
            folders.push_back(folder);
        }
    }

    PosixFileSystem const files;
    CodecImageTypes types;
    PhotoTest photoTest(types);
    IcuTextOrder const order(orderingLocale(::getenv));
    auto scan = scanFolders({ files, photoTest, order }, folders, arguments.has("--recursive"));
    auto const photos
        = scan.index.visible(scan.items, order, arguments.value("--filter").value_or(""),
            sortKeyFromRawValue(arguments.value("--sort").value_or("name")),
            !arguments.has("--descending"));
    std::string_view const end(arguments.has("-0") ? "\0" : "\n", 1);
    for (auto const& photo : photos) {
        context.out.write(photo.url.path());
        context.out.write(end);
        if (context.out.hasFailed())
            break;
    }
    return code;
}

} // namespace

Command const& listCommand()
{
    static constexpr Command command {
        .name = "list",
        .usage
        = "[--recursive] [--sort name|date|size] [--descending] [--filter TEXT] [-0] FOLDER…",
        .summary = "Print the photos of folders, as the gallery would show them.",
        .details = "  --recursive     photos in subfolders too\n"
                   "  --sort KEY      name (the default), date or size\n"
                   "  --descending    last first\n"
                   "  --filter TEXT   only photos whose name contains TEXT\n"
                   "  -0              end each path with a NUL byte instead of a line break\n",
        .options = options,
        .check = check,
        .run = run,
    };
    return command;
}

} // namespace pixelhain
