#include "support/FileBytes.h"
#include "support/ForkedRun.h"
#include "support/ImageWriters.h"
#include "support/PdfTools.h"
#include "support/Places.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryFolder.h"
#include <csignal>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/inotify.h>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

using Names = std::set<std::string>;

std::string_view view(FileBytes const& bytes)
{
    return { reinterpret_cast<char const*>(bytes.data()), bytes.size() };
}

/// Photos in a folder, a place for the sheet, and the program itself.
struct Shelf {
    TemporaryFolder folder;
    FileUrl photos = makeFolder(folder.url().child("Urlaub"));
    FileUrl output = makeFolder(folder.url().child("out"));
    FileUrl sheet = output.child("a.pdf");
    std::string out;
    std::string err;

    void addPhoto(std::string const& name, PixelSize size = { 40, 30 })
    {
        folder.file("Urlaub/" + name, view(writeJpeg(RgbaPixels::filled(size, 0x0000C0FF))));
    }
    void addPhotos(int count)
    {
        for (int i = 1; i <= count; ++i)
            addPhoto("IMG_" + std::to_string(i) + ".jpg");
    }

    /// Starts `pixelhain-cli contact-sheet --output a.pdf` with these words behind it.
    pid_t start(std::vector<std::string> words) const
    {
        words.insert(words.begin(),
            { "pixelhain-cli", "contact-sheet", "--output", std::string(sheet.path()) });
        return startForked([&] {
            auto const to = [&](char const* name) {
                return ::open(
                    folder.url().child(name).cString(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
            };
            ::dup2(to("stdout"), STDOUT_FILENO);
            ::dup2(to("stderr"), STDERR_FILENO);
            std::vector<char*> arguments;
            for (auto& word : words)
                arguments.push_back(word.data());
            arguments.push_back(nullptr);
            std::signal(SIGINT, SIG_DFL);
            ::execv((buildFolder() + "/pixelhain-cli").c_str(), arguments.data());
            return 127;
        });
    }

    int run(std::vector<std::string> const& words)
    {
        auto const ending = endingOf(start(words));
        out = bytesOf(folder.url().child("stdout"));
        err = bytesOf(folder.url().child("stderr"));
        return ending.signal == 0 ? ending.code : -ending.signal;
    }
    int run() { return run({ std::string(photos.path()) }); }

    Names left() const { return namesIn(output); }
};

/// Waits until something of this name comes into a folder.
class Arrival {
public:
    explicit Arrival(FileUrl const& folder)
    {
        ::inotify_add_watch(events_, folder.cString(), IN_CREATE);
    }
    ~Arrival() { ::close(events_); }
    bool wait() const
    {
        constexpr int seconds = 30;
        pollfd source { events_, POLLIN, 0 };
        return ::poll(&source, 1, seconds * 1000) > 0;
    }

private:
    int events_ = ::inotify_init1(IN_CLOEXEC);
};

} // namespace

TEST_CASE("a folder becomes a sheet in the gallery's order, titled after it")
{
    Shelf shelf;
    for (auto const* name : { "b10.jpg", "b9.jpg", "a.jpg" })
        shelf.addPhoto(name);
    CHECK(shelf.run() == 0);
    CHECK(shelf.out.empty());
    CHECK(shelf.err.empty());
    CHECK(shelf.left() == Names { "a.pdf" });
    CHECK(isSoundPdf(shelf.sheet));
    CHECK(pdfInfo(shelf.sheet, "Title") == "Urlaub");
    CHECK(pdfInfo(shelf.sheet, "Creator") == "Pixelhain");
    CHECK(pdfInfo(shelf.sheet, "Page size") == "595.28 x 841.89 pts (A4)");
    auto const text = textOf(shelf.sheet);
    CHECK(text.find("a.jpg") < text.find("b9.jpg"));
    CHECK(text.find("b9.jpg") < text.find("b10.jpg"));
    CHECK(imagesOf(shelf.sheet).size() == 3);
}

TEST_CASE("a small JPEG is in the sheet byte for byte, and nothing else of its file")
{
    Shelf shelf;
    auto pixels = RgbaPixels::filled({ 200, 150 }, 0x0000C0FF);
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i)
        pixels.rgba[i] = static_cast<std::uint8_t>(i * i / 7);
    auto const plain = std::string(view(writeJpeg(pixels)));
    auto const coded = plain.substr(plain.find("\xFF\xDB"));
    JpegOptions options;
    ExifOptions exif;
    exif.make = "Geheimnis";
    options.exif = exifBlock(exif);
    shelf.folder.file("Urlaub/small.jpg", view(writeJpeg(pixels, options)));
    exif.orientation = 6;
    options.exif = exifBlock(exif);
    shelf.folder.file("Urlaub/turned.jpg", view(writeJpeg(pixels, options)));
    CHECK(shelf.run() == 0);
    auto const sheet = bytesOf(shelf.sheet);
    auto const first = sheet.find(coded);
    CHECK(first != std::string::npos);
    CHECK(sheet.find(coded, first + 1) == std::string::npos);
    CHECK(sheet.find("Exif") == std::string::npos);
    CHECK(sheet.find("Geheimnis") == std::string::npos);
    CHECK(isSoundPdf(shelf.sheet));
    CHECK(imagesOf(shelf.sheet).size() == 2);
}

TEST_CASE("title, info line and names stand within half a point of their places")
{
    Shelf shelf;
    shelf.addPhotos(31);
    CHECK(shelf.run() == 0);
    CHECK(pdfInfo(shelf.sheet, "Pages") == "2");
    auto const title = wordOf(shelf.sheet, "Urlaub");
    REQUIRE(title);
    CHECK(std::abs(title->left - 36) < 0.5);
    CHECK(std::abs(title->bottom - 51) < 0.5);
    auto const pages = wordOf(shelf.sheet, "1/2");
    REQUIRE(pages);
    CHECK(std::abs(pages->right - 559.28) < 0.5);
    CHECK(std::abs(pages->bottom - 49) < 0.5);
    for (int index = 0; index < 30; ++index) {
        auto const name = wordOf(shelf.sheet, "IMG_" + std::to_string(index + 1) + ".jpg");
        REQUIRE(name);
        auto const left = 36 + index % 5 * 106.656;
        auto const bottom = 70 + 96.656 + index / 5 * 119.656; // of the cell, from the top
        CHECK(std::abs((name->left + name->right) / 2 - (left + 48.328)) < 0.5);
        CHECK(std::abs(name->top - (bottom + 1)) < 0.5);
    }
    CHECK(wordOf(shelf.sheet, "2/2", 2));
    CHECK(wordOf(shelf.sheet, "IMG_31.jpg", 2));
}

TEST_CASE("every option is heard")
{
    Shelf shelf;
    shelf.addPhotos(3);
    CHECK(shelf.run({ "--title", "Mein Titel", "--columns", "2", "--paper", "letter", "--landscape",
              "--no-names", std::string(shelf.photos.path()) })
        == 0);
    CHECK(pdfInfo(shelf.sheet, "Title") == "Mein Titel");
    CHECK(pdfInfo(shelf.sheet, "Page size") == "792 x 612 pts (letter)");
    CHECK(pdfInfo(shelf.sheet, "Pages") == "2");
    CHECK(textOf(shelf.sheet).find("IMG_1.jpg") == std::string::npos);
}

TEST_CASE("files and folders stand in the order in which they are named")
{
    Shelf shelf;
    shelf.addPhotos(2);
    auto const other
        = shelf.folder.file("z.jpg", view(writeJpeg(RgbaPixels::filled({ 30, 40 }, 0xC0FF))));
    CHECK(shelf.run({ std::string(other.path()), std::string(shelf.photos.path()) }) == 0);
    auto const text = textOf(shelf.sheet);
    CHECK(text.find("z.jpg") < text.find("IMG_1.jpg"));
    CHECK(shelf.run({ std::string(other.path()) }) == 0);
    CHECK(pdfInfo(shelf.sheet, "Title") == "Kontaktabzug");
}

TEST_CASE("a photo that cannot be read is named, and its place on the sheet stays empty")
{
    Shelf shelf;
    shelf.addPhotos(2);
    auto const broken = shelf.folder.file("Urlaub/broken.jpg", "no picture");
    CHECK(shelf.run() == 1);
    CHECK(shelf.err == "pixelhain-cli: " + std::string(broken.path()) + ": cannot be read\n");
    CHECK(imagesOf(shelf.sheet).size() == 2);
    CHECK(wordOf(shelf.sheet, "broken.jpg"));
    CHECK(isSoundPdf(shelf.sheet));
}

TEST_CASE("a wrong call writes nothing")
{
    Shelf shelf;
    shelf.addPhotos(1);
    std::string const photos(shelf.photos.path());
    for (auto const& words : std::vector<std::vector<std::string>> {
             { "--columns", "0", photos },
             { "--columns", "21", photos },
             { "--columns", "many", photos },
             { "--paper", "a5", photos },
             { "--paper", "A4", photos },
             { "--output", "", photos },
             {},
         })
        CHECK(shelf.run(words) == 2);
    CHECK(shelf.left().empty());
}

TEST_CASE("without photos nothing is written")
{
    Shelf shelf;
    CHECK(shelf.run() == 1);
    CHECK(shelf.err.find("no photos") != std::string::npos);
    CHECK(shelf.left().empty());
}

TEST_CASE("what is not there is named and has no place on the sheet; an old one stays if it is all")
{
    Shelf shelf;
    shelf.addPhotos(2);
    std::string const photos(shelf.photos.path());
    REQUIRE(shelf.run() == 0);
    auto const missing = std::string(shelf.folder.url().child("Urlab").path());
    CHECK(shelf.run({ missing }) == 1);
    CHECK(shelf.err.starts_with("pixelhain-cli: " + missing + ": cannot be found\n"));
    CHECK(imagesOf(shelf.sheet).size() == 2);
    CHECK(shelf.run({ missing, photos }) == 1);
    CHECK(imagesOf(shelf.sheet).size() == 2);
    CHECK_FALSE(wordOf(shelf.sheet, "Urlab"));
}

TEST_CASE("an older sheet is replaced, a file of any other kind is not")
{
    Shelf shelf;
    shelf.addPhotos(1);
    shelf.folder.file("out/a.pdf", "%PDF-1.4 of last year");
    CHECK(shelf.run() == 0);
    CHECK(isSoundPdf(shelf.sheet));

    shelf.folder.file("out/a.pdf", "\xFF\xD8\xFF a photo");
    CHECK(shelf.run() == 1);
    CHECK(shelf.err.find("no PDF, not replaced") != std::string::npos);
    CHECK(bytesOf(shelf.sheet) == "\xFF\xD8\xFF a photo");
    CHECK(shelf.left() == Names { "a.pdf" });
}

TEST_CASE("a place that cannot be written to is named")
{
    Shelf shelf;
    shelf.addPhotos(1);
    shelf.sheet = shelf.folder.url().child("gone").child("a.pdf");
    CHECK(shelf.run() == 1);
    CHECK(shelf.err
        == "pixelhain-cli: " + std::string(shelf.sheet.path()) + ": there is no such folder\n");
}

TEST_CASE("a full drive is named, and the old sheet stays")
{
    Shelf shelf;
    bool const mayMount = withPrivateMounts([&] {
        REQUIRE(mountMemory(shelf.output, "size=64k"));
        shelf.folder.file("out/a.pdf", "%PDF-old");
        shelf.folder.file("out/photos", std::string(56 * 1024, 'p'));
        shelf.addPhotos(40);
        CHECK(shelf.run() == 1);
        CHECK(shelf.err.find("a.pdf: no space left on the drive\n") != std::string::npos);
        CHECK(bytesOf(shelf.sheet) == "%PDF-old");
        ::umount2(shelf.output.cString(), MNT_DETACH);
    });
    if (!mayMount)
        MESSAGE("skipped: this user may not mount file systems");
}

TEST_CASE("interrupted, the program ends by the signal and leaves what was there")
{
    for (int const signal : { SIGINT, SIGTERM, SIGHUP }) {
        Shelf shelf;
        shelf.folder.file("out/a.pdf", "%PDF-old");
        shelf.addPhoto("1.jpg", { 2000, 1500 });
        for (int i = 2; i <= 3000; ++i)
            REQUIRE(::link(shelf.photos.child("1.jpg").cString(),
                        shelf.photos.child(std::to_string(i) + ".jpg").cString())
                == 0);
        Arrival const part(shelf.output);
        auto const process = shelf.start({ std::string(shelf.photos.path()) });
        CHECK(part.wait());
        ::kill(process, signal);
        auto const ending = endingOf(process);
        CHECK(ending.signal == signal);
        CHECK(shelf.left() == Names { "a.pdf" });
        CHECK(bytesOf(shelf.sheet) == "%PDF-old");
    }
}
