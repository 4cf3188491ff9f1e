#include "cli/ListCommand.h"
#include "cli/NamingFailures.h"
#include "codecs/CodecImageTypes.h"
#include "icu/IcuTextOrder.h"
#include "model/PhotoTest.h"
#include "model/Scanning.h"
#include "model/SortKey.h"
#include <array>
#include <cstdlib>
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

ExitCode run(Arguments const& arguments, CommandContext const& context)
{
    std::vector<FileUrl> folders;
    for (auto const operand : arguments.operands())
        folders.push_back(context.place(operand));
    NamingFailures const files(context);
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
    return files.hasFailed() ? ExitCode::failure : ExitCode::success;
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
