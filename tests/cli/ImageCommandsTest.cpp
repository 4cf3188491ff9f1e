#include "cli/CommandLine.h"
#include "support/ImageWriters.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

std::string_view view(FileBytes const& bytes)
{
    return { reinterpret_cast<char const*>(bytes.data()), bytes.size() };
}

/// What a command prints, kept in memory.
class Printed {
public:
    ~Printed() { ::close(descriptor_); }
    Output& output() { return output_; }
    std::string text() const
    {
        std::string bytes(static_cast<std::size_t>(::lseek(descriptor_, 0, SEEK_END)), '\0');
        REQUIRE(::pread(descriptor_, bytes.data(), bytes.size(), 0) >= 0);
        return bytes;
    }

private:
    int descriptor_ = ::memfd_create("printed", MFD_CLOEXEC);
    Output output_ { descriptor_ };
};

/// A folder of pictures, the arguments that name them, and what a command wrote.
struct Desk {
    TemporaryFolder folder;
    std::vector<std::string> arguments;
    Printed out;
    Printed errors;

    std::string add(std::string const& name, FileBytes const& bytes)
    {
        arguments.emplace_back(folder.file(name, view(bytes)).path());
        return arguments.back();
    }
    std::string addMissing(std::string const& name)
    {
        arguments.emplace_back(folder.url().child(name).path());
        return arguments.back();
    }

    int run(std::vector<std::string_view> words)
    {
        words.insert(words.end(), arguments.begin(), arguments.end());
        return static_cast<int>(runCommandLine(
            words, { out.output(), errors.output(), std::string(folder.url().path()) }));
    }
};

FileBytes picture(PixelSize size)
{
    return writeJpeg(RgbaPixels::filled(size, 0x0000C0FF));
}

FileBytes pictureWithPreview(PixelSize size, PixelSize preview)
{
    ExifOptions exif;
    exif.thumbnail = picture(preview);
    JpegOptions options;
    options.exif = exifBlock(exif);
    return writeJpeg(RgbaPixels::filled(size, 0xC00000FF), options);
}

long peakMegabytes()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

TEST_CASE("thumbnails are reported in the order of the arguments, with their origin")
{
    Desk desk;
    auto const preview = desk.add("a.jpg", pictureWithPreview({ 800, 600 }, { 160, 120 }));
    auto const scaled = desk.add("gr\xFC\xDF.jpg", picture({ 1600, 1200 }));
    auto const small = desk.add("c.jpg", picture({ 40, 30 }));
    CHECK(desk.run({ "thumbnail", "--size", "200" }) == 0);
    CHECK(desk.out.text()
        == preview + "\t160\t120\tembedded\n" + scaled + "\t200\t150\tscaled\n" + small
            + "\t40\t30\tfull\n");
    CHECK(desk.errors.text().empty());
}

TEST_CASE("with --bytes it is told how little of a file was read for its preview")
{
    Desk desk;
    auto file = pictureWithPreview({ 800, 600 }, { 160, 120 });
    constexpr std::size_t kind = 64; // by which the codec is chosen
    constexpr std::size_t head = 65536;
    file.resize(file.size() + 10 * head);
    auto const path = desk.add("a.jpg", file);
    CHECK(desk.run({ "thumbnail", "--size", "200", "--bytes" }) == 0);
    CHECK(desk.out.text() == path + "\t160\t120\tembedded\t" + std::to_string(kind + head) + "\n");
}

TEST_CASE("with --display previews inside the files are left alone, at any size")
{
    Desk desk;
    auto const path = desk.add("a.jpg", pictureWithPreview({ 800, 600 }, { 160, 120 }));
    CHECK(desk.run({ "thumbnail", "--size", "200", "--display" }) == 0);
    CHECK(desk.out.text() == path + "\t200\t150\tscaled\n");
}

TEST_CASE("info prints the lines of each photo, an empty line between them")
{
    Desk desk;
    ExifOptions exif;
    exif.make = "Canon";
    exif.model = "Canon EOS \nR5\x1B[2J";
    exif.dateTimeOriginal = "2023:05:17 14:30:12";
    JpegOptions options;
    options.exif = exifBlock(exif);
    desk.add("a.jpg", writeJpeg(RgbaPixels::filled({ 40, 30 }, 0x0000C0FF), options));
    auto const missing = desk.addMissing("gone.jpg");
    desk.add("gr\xFC\xDF.jpg", picture({ 1, 1 }));
    CHECK(desk.run({ "info" }) == 1);
    auto const text = desk.out.text();
    CAPTURE(text);
    auto const second = text.find("\n\ngr\uFFFD\uFFFD.jpg\n1 × 1 px (0.0 MP) · ");
    REQUIRE(second != std::string::npos);
    auto const first = text.substr(0, second);
    CHECK(first.starts_with("a.jpg\n40 × 30 px (0.0 MP) · "));
    CHECK(first.ends_with("\nAufgenommen: 2023:05:17 14:30:12\nCanon EOS ?R5?[2J"));
    CHECK(text.find("\nGeändert: ", second) != std::string::npos);
    CHECK(desk.errors.text() == "pixelhain-cli: " + missing + ": cannot be read\n");
}

TEST_CASE("info without a file is a wrong call")
{
    Desk desk;
    CHECK(desk.run({ "info" }) == 2);
    CHECK(desk.errors.text().starts_with("pixelhain-cli: info: no file given\nUsage: "));
}

TEST_CASE("a file that cannot be read is named, and the others are still done")
{
    Desk desk;
    auto const first = desk.add("a.jpg", picture({ 40, 30 }));
    auto const missing = desk.addMissing("gone.jpg");
    auto const last = desk.add("c.jpg", picture({ 30, 40 }));
    CHECK(desk.run({ "thumbnail", "--size", "200" }) == 1);
    CHECK(desk.out.text() == first + "\t40\t30\tfull\n" + last + "\t30\t40\tfull\n");
    CHECK(desk.errors.text() == "pixelhain-cli: " + missing + ": cannot be read\n");
}

TEST_CASE("thumbnails are written under the names of their files")
{
    Desk desk;
    desk.add("a\xFF.jpg", picture({ 40, 30 }));
    TemporaryFolder const output;
    CHECK(desk.run({ "thumbnail", "--size", "20", "--output", output.url().path() }) == 0);
    CHECK(std::filesystem::exists(output.url().child("a\xFF.jpg.png").path()));
}

TEST_CASE("the output folder is made where there is none")
{
    Desk desk;
    desk.add("a.jpg", picture({ 40, 30 }));
    TemporaryFolder const place;
    auto const output = place.url().child("new").child("thumbs");
    CHECK(desk.run({ "thumbnail", "--size", "20", "--output", output.path() }) == 0);
    CHECK(std::filesystem::exists(output.child("a.jpg.png").path()));
}

TEST_CASE("where the output folder cannot be made nothing is decoded")
{
    Desk desk;
    desk.add("a.jpg", picture({ 40, 30 }));
    TemporaryFolder const place;
    auto const output = place.file("there", "a photo").child("thumbs");
    CHECK(desk.run({ "thumbnail", "--size", "20", "--output", output.path() }) == 1);
    CHECK(desk.out.text().empty());
    CHECK(desk.errors.text().starts_with("pixelhain-cli: "));
}

TEST_CASE("a later file of the same name neither replaces the earlier one nor passes for done")
{
    Desk desk;
    auto const first = desk.add("a.jpg", picture({ 40, 30 }));
    REQUIRE(::mkdir(desk.folder.url().child("other").cString(), 0700) == 0);
    auto const second = desk.add("other/a.jpg", picture({ 30, 40 }));
    TemporaryFolder const output;
    CHECK(desk.run({ "thumbnail", "--size", "100", "--output", output.url().path() }) == 1);
    CHECK(desk.out.text() == first + "\t40\t30\tfull\n");
    CHECK(desk.errors.text()
        == "pixelhain-cli: " + second + ": an earlier file has this name, not written\n");
}

TEST_CASE("what lies in the output folder already is not replaced")
{
    Desk desk;
    desk.add("a.jpg", picture({ 40, 30 }));
    TemporaryFolder const output;
    auto const there = output.file("a.jpg.png", "a photo");
    CHECK(desk.run({ "thumbnail", "--size", "100", "--output", output.url().path() }) == 1);
    CHECK(desk.errors.text().find(there.path()) != std::string::npos);
    CHECK(std::filesystem::file_size(there.path()) == 7);
}

// The address sanitizer keeps this much of freed memory out of use, to find late accesses.
constexpr auto keptByAllocator = isAddressSanitized ? 256 : 0;

TEST_CASE("many pictures need no more memory than few")
{
    Desk desk;
    auto const path = desk.add("a.jpg", picture({ 1000, 1000 }));
    for (int i = 0; i < 200; ++i) {
        auto const link = desk.folder.url().child(std::to_string(i) + ".jpg");
        std::filesystem::create_hard_link(path, link.path());
        desk.arguments.emplace_back(link.path());
    }
    auto const before = peakMegabytes();
    CHECK(desk.run({ "thumbnail", "--size=1000", "--display" }) == 0);
    // 201 pictures of 4 MB each would be 804; the cache holds eight.
    CHECK(peakMegabytes() - before < 250 + keptByAllocator);
}

TEST_CASE("metadata is reported without decoding")
{
    Desk desk;
    ExifOptions exif;
    exif.orientation = 6;
    JpegOptions options;
    options.exif = exifBlock(exif);
    auto const turned
        = desk.add("a.jpg", writeJpeg(RgbaPixels::filled({ 40, 30 }, 0x0000C0FF), options));
    PngOptions two;
    two.frames = { RgbaPixels::filled({ 16, 8 }, 0x0000C0FF) };
    auto const animated
        = desk.add("b.png", writePng(RgbaPixels::filled({ 16, 8 }, 0x0000C0FF), two));
    auto const missing = desk.addMissing("gone.jpg");
    CHECK(desk.run({ "meta" }) == 1);
    CHECK(desk.out.text() == turned + "\t30\t40\tstill\n" + animated + "\t16\t8\tanimated\n");
    CHECK(desk.errors.text() == "pixelhain-cli: " + missing + ": cannot be read\n");
}

TEST_CASE("relative files are sought in the working folder and reported as they were given")
{
    Desk desk;
    desk.add("a.jpg", picture({ 40, 30 }));
    desk.arguments = { "a.jpg" };
    CHECK(desk.run({ "meta" }) == 0);
    CHECK(desk.out.text() == "a.jpg\t40\t30\tstill\n");
}

TEST_CASE("wrong usage does nothing and says why")
{
    Desk desk;
    CHECK(desk.run({ "meta" }) == 2);
    CHECK(desk.run({ "thumbnail", "--size", "200" }) == 2);
    desk.add("a.jpg", picture({ 40, 30 }));
    for (std::vector<std::string_view> const& words : std::vector<std::vector<std::string_view>> {
             { "thumbnail" }, { "thumbnail", "--size", "0" }, { "thumbnail", "--size", "x" },
             { "thumbnail", "--size", "65536" }, { "thumbnail", "--size", "9", "--jobs", "0" },
             { "thumbnail", "--size", "9", "--output", "" }, { "thumbnail", "--big" },
             { "meta", "--size", "9" } })
        CHECK(desk.run(words) == 2);
    CHECK(desk.out.text().empty());
    CHECK(desk.errors.text().find("--size takes a number from 1 to 65535") != std::string::npos);
}

TEST_CASE("a command ends when nobody can read what it prints")
{
    Desk desk;
    desk.add("a.jpg", picture({ 40, 30 }));
    int const full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    Output out(full);
    std::vector<std::string_view> const words { "meta", desk.arguments[0] };
    CHECK(runCommandLine(words, { out, desk.errors.output(), "/" }) == ExitCode::failure);
    CHECK(desk.errors.text().find("standard output") != std::string::npos);
    ::close(full);
}
