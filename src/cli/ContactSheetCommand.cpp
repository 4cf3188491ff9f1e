#include "cli/ContactSheetCommand.h"
#include "base/Text.h"
#include "cli/CommandLoader.h"
#include "cli/Interruption.h"
#include "cli/NamingFailures.h"
#include "cli/ProgressBar.h"
#include "codecs/CodecImageTypes.h"
#include "contactsheet/ContactSheetRenderer.h"
#include "icu/IcuTextFormats.h"
#include "icu/IcuTextOrder.h"
#include "model/PhotoTest.h"
#include "model/Scanning.h"
#include "pdf/LoadedPdfWriter.h"
#include "posix/FolderHandle.h"
#include "posix/PosixFileReplacement.h"
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

namespace pixelhain {

namespace {

constexpr int leastColumns = 1;
constexpr int mostColumns = 20;

constexpr auto options = std::to_array<Option>({
    { "--title", OptionValue::required },
    { "--columns", OptionValue::required },
    { "--paper", OptionValue::required },
    { "--landscape" },
    { "--no-names" },
    { "--output", OptionValue::required },
});

std::optional<int> columnsIn(Arguments const& arguments)
{
    auto const text = arguments.value("--columns");
    return text ? parseNumber(*text, leastColumns, mostColumns)
                : std::optional(ContactSheetOptions().columns);
}

std::optional<PaperSize> paperIn(Arguments const& arguments)
{
    return paperSizeFromRawValue(arguments.value("--paper").value_or("a4"));
}

std::optional<Failure> check(Arguments const& arguments)
{
    if (!columnsIn(arguments))
        return Failure { "--columns takes a number from " + std::to_string(leastColumns) + " to "
            + std::to_string(mostColumns) };
    if (!paperIn(arguments))
        return Failure { "--paper takes a4, a3 or letter" };
    if (arguments.value("--output").value_or("").empty())
        return Failure { "--output FILE.pdf is missing" };
    if (arguments.operands().empty())
        return Failure { "no folder or file given" };
    return std::nullopt;
}

std::string_view reasonOf(WriteProblem problem)
{
    switch (problem) {
    case WriteProblem::noSpace:
        return "no space left on the drive";
    case WriteProblem::notAllowed:
        return "permission denied";
    case WriteProblem::readOnly:
        return "the drive is read-only";
    case WriteProblem::noFolder:
        return "there is no such folder";
    case WriteProblem::nameTooLong:
        return "the name is too long";
    case WriteProblem::notAFile:
        return "is there already and is no file";
    case WriteProblem::taken:
        return "another file of that name has appeared meanwhile, not replaced";
    case WriteProblem::tooLarge:
        return "too large for the drive";
    case WriteProblem::other:
        break;
    }
    return "cannot be written";
}

// A word too much or too few on a command line must not cost a photo.
bool isOtherThanPdf(FileUrl const& url)
{
    constexpr std::string_view signature = "%PDF-";
    struct stat status { };
    if (::stat(url.cString(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0)
        return false;
    std::array<char, signature.size()> head {};
    Descriptor const file(::open(url.cString(), O_RDONLY | O_CLOEXEC));
    auto const count
        = file ? uninterrupted([&] { return ::read(file.get(), head.data(), head.size()); }) : 0;
    return std::string_view(head.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)))
        != signature;
}

std::string today()
{
    return IcuTextFormats(formatLocales(::getenv)).date(std::chrono::system_clock::now());
}

/// What the operands stand for.
struct Operands {
    std::vector<PhotoItem> photos; ///< in the operands' order, those of a folder as in the gallery
    std::string folderNames; ///< joined with ", "
    bool hasFailed = false;
};

Operands read(Arguments const& arguments, CommandContext const& context)
{
    Operands found;
    NamingFailures const files(context);
    CodecImageTypes types;
    PhotoTest photoTest(types);
    IcuTextOrder const order(orderingLocale(::getenv));
    for (auto const operand : arguments.operands()) {
        auto const url = context.place(operand);
        if (!files.exists(url)) {
            context.complain(operand, "cannot be found");
            found.hasFailed = true;
            continue;
        }
        if (!files.isFolder(url)) {
            found.photos.push_back({ url });
            continue;
        }
        auto scan = scanFolders({ files, photoTest, order }, std::array { url }, false);
        auto const photos = scan.index.visible(scan.items, order, "", SortKey::name, true);
        found.photos.insert(found.photos.end(), photos.begin(), photos.end());
        found.folderNames += (found.folderNames.empty() ? "" : ", ") + displayText(url.name());
    }
    found.hasFailed |= files.hasFailed();
    return found;
}

ContactSheetOptions optionsIn(Arguments const& arguments, std::string const& usualTitle)
{
    ContactSheetOptions chosen;
    chosen.title = arguments.value("--title").value_or(usualTitle);
    chosen.columns = *columnsIn(arguments);
    chosen.paper = *paperIn(arguments);
    chosen.landscape = arguments.has("--landscape");
    chosen.showNames = !arguments.has("--no-names");
    return chosen;
}

/// Writes the sheet; photos without a picture are named as they are met.
ContactSheetResult render(
    ContactSheetJob job, bool& anyMissing, FileRun& run, CommandContext const& context)
{
    ProgressBar bar(context.err);
    job.withoutPicture = [&](PhotoItem const& photo) {
        bar.clear();
        context.complain(photo.url.path(), "cannot be read");
        anyMissing = true;
    };
    job.pageDone = [&](std::size_t done, std::size_t pages) { bar.show(done, pages); };
    PosixFileReplacements files;
    LoadedPdfWriter pdf(files);
    CommandLoader desk(usualJobs(), 1);
    return renderContactSheet({ desk.loader, desk.thumbQueue, usualJobs(), pdf }, job, run);
}

ExitCode run(Arguments const& arguments, CommandContext const& context)
{
    auto const output = *arguments.value("--output");
    auto const target = context.place(output);
    if (isOtherThanPdf(target)) {
        context.complain(output, "is there already and is no PDF, not replaced");
        return ExitCode::failure;
    }
    auto operands = read(arguments, context);
    if (operands.photos.empty()) {
        context.complain(output, "no photos, not written");
        return ExitCode::failure;
    }
    FileRun run;
    int signal = 0;
    ContactSheetResult result;
    bool hasFailed = operands.hasFailed;
    {
        Interruption const interruption(run.cancel);
        result = render({ std::move(operands.photos), optionsIn(arguments, operands.folderNames),
                            today(), target },
            hasFailed, run, context);
        signal = interruption.signal();
    }
    if (result.end == ContactSheetResult::End::cancelled)
        Interruption::endBy(signal);
    if (result.end == ContactSheetResult::End::failed) {
        context.complain(output, reasonOf(result.problem));
        hasFailed = true;
    }
    return hasFailed ? ExitCode::failure : ExitCode::success;
}

} // namespace

Command const& contactSheetCommand()
{
    static constexpr Command command {
        .name = "contact-sheet",
        .usage = "[--title T] [--columns N] [--paper a4|a3|letter] [--landscape] [--no-names] "
                 "--output FILE.pdf FOLDER|FILE…",
        .summary = "Write a PDF of thumbnails.",
        .details
        = "Photos come in the order of the operands, those of a folder in the gallery's;\n"
          "one that cannot be read leaves its square empty. FILE.pdf is replaced only when\n"
          "the new one is complete, and only if it is a PDF.\n"
          "  --output FILE   the PDF\n"
          "  --title T       heading of every page; usually the folders' names\n"
          "  --columns N     thumbnails in a row, from 1 to 20; usually 5\n"
          "  --paper SIZE    a4 (the default), a3 or letter\n"
          "  --landscape     pages turned\n"
          "  --no-names      no file names under the thumbnails\n",
        .options = options,
        .check = check,
        .run = run,
    };
    return command;
}

} // namespace pixelhain
