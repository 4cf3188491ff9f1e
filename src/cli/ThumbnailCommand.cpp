#include "cli/ThumbnailCommand.h"
#include "cli/CommandLoader.h"
#include "cli/InOrder.h"
#include "cli/PngFile.h"
#include <array>
#include <filesystem>
#include <string>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace pixelhain {

namespace {

constexpr int largestSize = 65535;
constexpr int mostJobs = 256;

constexpr auto options = std::to_array<Option>({
    { "--size", OptionValue::required },
    { "--display" },
    { "--jobs", OptionValue::required },
    { "--output", OptionValue::required },
    { "--bytes" },
});

std::optional<int> sizeIn(Arguments const& arguments)
{
    return parseNumber(arguments.value("--size").value_or(""), 1, largestSize);
}

std::size_t jobsIn(Arguments const& arguments)
{
    auto const number = parseNumber(arguments.value("--jobs").value_or(""), 1, mostJobs);
    return number ? static_cast<std::size_t>(*number) : usualJobs();
}

std::optional<Failure> check(Arguments const& arguments)
{
    auto const jobs = arguments.value("--jobs");
    if (!sizeIn(arguments))
        return Failure { "--size takes a number from 1 to " + std::to_string(largestSize) };
    if (jobs && !parseNumber(*jobs, 1, mostJobs))
        return Failure { "--jobs takes a number from 1 to " + std::to_string(mostJobs) };
    if (arguments.value("--output") == "")
        return Failure { "--output takes a folder" };
    if (arguments.operands().empty())
        return Failure { "no file given" };
    return std::nullopt;
}

std::string_view nameOf(PixelOrigin origin)
{
    switch (origin) {
    case PixelOrigin::embedded:
        return "embedded";
    case PixelOrigin::scaled:
        return "scaled";
    case PixelOrigin::full:
        break;
    }
    return "full";
}

FileOutcome outcomeOf(std::string_view path, CGImageBox const& picture, bool areBytesTold)
{
    std::string line(path);
    line += '\t' + std::to_string(picture.image.size.width);
    line += '\t' + std::to_string(picture.image.size.height);
    (line += '\t') += nameOf(picture.origin);
    if (areBytesTold)
        line += '\t' + std::to_string(picture.bytesRead);
    return { true, line };
}

/// One run of the command.
class Thumbnails {
public:
    Thumbnails(Arguments const& arguments, CommandContext const& context)
        : files_(arguments.operands())
        , context_(context)
        , size_(*sizeIn(arguments))
        , isDisplay_(arguments.has("--display"))
        , areBytesTold_(arguments.has("--bytes"))
        , desk_(jobsIn(arguments), size_)
    {
        if (auto const folder = arguments.value("--output"))
            output_ = context.place(*folder);
    }

    Task start(std::size_t file, InOrder::Done done)
    {
        auto const path = files_[file];
        auto const url = context_.place(path);
        if (output_ && !names_.emplace(url.name()).second) {
            desk_.loop.post([done = std::move(done)] {
                done({ false, "an earlier file has this name, not written" });
            });
            return {};
        }
        auto finish = [this, path, url, done = std::move(done)](ImageRef const& picture) {
            if (!picture)
                done({ false, "cannot be read" });
            else if (output_)
                write(path, url, picture, done);
            else
                done(outcomeOf(path, *picture, areBytesTold_));
        };
        return isDisplay_ ? desk_.loader.loadDisplayImage(url, std::move(finish))
                          : desk_.loader.loadThumbnail(url, size_, std::move(finish));
    }

    ConsoleLoop& loop() { return desk_.loop; }

private:
    void write(std::string_view path, FileUrl const& url, ImageRef const& picture,
        InOrder::Done const& done)
    {
        auto const target = output_->child(std::string(url.name()).append(".png"));
        desk_.background.run(Priority::userInitiated, [this, path, target, picture, done] {
            auto outcome = outcomeOf(path, *picture, areBytesTold_);
            if (auto const failure = writePng(picture->image, target))
                outcome = { false, std::string(target.path()) + ": " + failure->reason };
            desk_.loop.post([done, outcome = std::move(outcome)] { done(outcome); });
        });
    }

    std::span<std::string_view const> files_;
    CommandContext const& context_;
    int size_;
    bool isDisplay_;
    bool areBytesTold_;
    std::optional<FileUrl> output_;
    std::unordered_set<std::string> names_;
    CommandLoader desk_;
};

ExitCode run(Arguments const& arguments, CommandContext const& context)
{
    if (auto const output = arguments.value("--output")) {
        std::error_code error;
        std::filesystem::create_directories(context.place(*output).path(), error);
        if (error) {
            context.complain(*output, error.message());
            return ExitCode::failure;
        }
    }
    Thumbnails thumbnails(arguments, context);
    auto const start = [&](std::size_t file, InOrder::Done done) {
        return thumbnails.start(file, std::move(done));
    };
    return runForFiles(arguments.operands(), jobsIn(arguments), start, thumbnails.loop(), context);
}

} // namespace

Command const& thumbnailCommand()
{
    static constexpr Command command {
        .name = "thumbnail",
        .usage = "--size N [--display] [--jobs N] [--bytes] [--output DIR] FILE…",
        .summary = "Decode pictures as the gallery does.",
        .details
        = "Prints path, width, height and where the pixels came from, separated by tabs:\n"
          "embedded (a preview in the file), scaled (the picture, read at a reduced\n"
          "scale) or full.\n"
          "  --size N        longest side at most, in pixels\n"
          "  --display       as the viewer does: without the previews in the files\n"
          "  --jobs N        pictures decoded side by side; usually the processors\n"
          "  --bytes         tell last how many bytes of the file were read\n"
          "  --output DIR    write DIR/NAME.png, NAME with its ending, in a folder that is made\n"
          "                  if it is not there; never over a file: of two files of one\n"
          "                  name the second fails\n",
        .options = options,
        .check = check,
        .run = run,
    };
    return command;
}

} // namespace pixelhain
