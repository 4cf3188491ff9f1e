#include "pdf/CairoPdf.h"
#include "posix/PosixFileReplacement.h"
#include "support/FakeImageDecoder.h"
#include "support/FileBytes.h"
#include "support/PdfTools.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryFolder.h"
#include <cstdint>
#include <doctest/doctest.h>
#include <string>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

constexpr PageSize a4 { 595.28, 841.89 };
constexpr PdfTextStyle heading { 13, PdfTextStyle::Weight::semibold, 0 };
constexpr PdfTextStyle small { 7, PdfTextStyle::Weight::regular, 0.33 };
constexpr double wide = 500;

/// A PDF in a folder of its own.
struct Document {
    TemporaryFolder folder;
    FileUrl file = folder.url().child("a.pdf");
    PosixFileReplacements files;
    CairoPdfWriter writer { files };

    std::unique_ptr<PdfCanvas> begin(PageSize page = a4, std::string const& title = "Urlaub")
    {
        auto begun = writer.begin({ file, title, "Pixelhain", page });
        REQUIRE(std::holds_alternative<std::unique_ptr<PdfCanvas>>(begun));
        return std::move(std::get<std::unique_ptr<PdfCanvas>>(begun));
    }

    /// A page on which `draw` has drawn.
    template <typename Draw> void page(Draw draw)
    {
        auto const canvas = begin();
        draw(*canvas);
        REQUIRE(canvas->endPage());
        REQUIRE_FALSE(canvas->finish().has_value());
        REQUIRE(isSoundPdf(file));
    }
};

// Every pixel another one, as in a photo of gravel.
Bitmap noise(PixelSize size)
{
    auto bitmap = Bitmap::allocate(size, true);
    std::uint32_t state = 1;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width * 4; ++x) {
            state = state * 1664525 + 1013904223;
            bitmap.row(y)[x] = x % 4 == 3 ? 255 : static_cast<std::uint8_t>(state >> 24U);
        }
    return bitmap;
}

Bitmap filled(PixelSize size, std::array<int, 4> const& bgra)
{
    auto bitmap = Bitmap::allocate(size, bgra[3] == 255);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width * 4; ++x)
            bitmap.row(y)[x] = static_cast<std::uint8_t>(bgra[static_cast<std::size_t>(x % 4)]);
    return bitmap;
}

void checkColor(std::array<int, 3> const& color, std::array<int, 3> const& wanted)
{
    for (std::size_t i = 0; i < 3; ++i)
        CHECK(std::abs(color[i] - wanted[i]) <= 4);
}

} // namespace

TEST_CASE("pages have their exact size, and the document its title and creator")
{
    Document document;
    auto const canvas = document.begin(a4, "Ü \"(\\) 京都");
    REQUIRE(canvas->endPage());
    REQUIRE(canvas->endPage());
    REQUIRE_FALSE(canvas->finish().has_value());
    CHECK(isSoundPdf(document.file));
    CHECK(pdfInfo(document.file, "Pages") == "2");
    CHECK(pdfInfo(document.file, "Page size") == "595.28 x 841.89 pts (A4)");
    CHECK(pdfInfo(document.file, "Title") == "Ü \"(\\) 京都");
    CHECK(pdfInfo(document.file, "Creator") == "Pixelhain");
}

TEST_CASE("the box of a line of text has its lower left corner where it was asked for")
{
    Document document;
    document.page([](PdfCanvas& canvas) {
        canvas.drawText("Haus", heading, { 36, 790.89 }, wide);
        auto const width = canvas.textWidth("9/16", small);
        canvas.drawText("9/16", small, { 559.28 - width, 792.89 }, width);
    });
    auto const left = wordOf(document.file, "Haus");
    REQUIRE(left);
    CHECK(std::abs(left->left - 36) < 0.1);
    CHECK(std::abs(left->bottom - 51) < 0.1);
    auto const right = wordOf(document.file, "9/16");
    REQUIRE(right);
    CHECK(std::abs(right->right - 559.28) < 0.1);
    CHECK(std::abs(right->bottom - 49) < 0.1);
}

TEST_CASE("a label stands at the top of its box, in the middle")
{
    Document document;
    document.page([](PdfCanvas& canvas) {
        canvas.drawLabel("IMG.jpg", small, { 100, 500, 96, 12 });
        canvas.drawLabel("京都", small, { 200, 500, 96, 12 });
        canvas.drawLabel("IMG2.jpg", small, { 300, 500, 96, 12 });
    });
    auto const label = wordOf(document.file, "IMG.jpg");
    auto const other = wordOf(document.file, "IMG2.jpg");
    REQUIRE(label);
    REQUIRE(other);
    CHECK(std::abs((label->left + label->right) / 2 - 148) < 0.1);
    CHECK(std::abs(label->top - (841.89 - 512)) < 0.1);
    CHECK(label->top == doctest::Approx(other->top));
    CHECK(textOf(document.file).find("京都") != std::string::npos);
}

TEST_CASE("a label that is too wide loses its middle, a heading its end")
{
    Document document;
    document.page([](PdfCanvas& canvas) {
        canvas.drawLabel("IMG_0123456789_with_a_long_name_2026.jpg", small, { 100, 500, 80, 12 });
        canvas.drawText("Sommer-in-den-Bergen-und-am-Meer", heading, { 36, 790 }, 80);
    });
    auto const words = wordsOf(document.file);
    REQUIRE(words.size() == 2);
    for (auto const& word : words) {
        auto const dots = word.text.find("…");
        REQUIRE(dots != std::string::npos);
        CHECK(word.right - word.left <= 80.1);
        CHECK(word.right - word.left > 60);
        bool const isLabel = word.text.starts_with("IMG_");
        CHECK(word.text.ends_with(isLabel ? "2026.jpg" : "…"));
    }
}

TEST_CASE("a text that was measured is not cut to its own width")
{
    Document document;
    document.page([](PdfCanvas& canvas) {
        for (int i = 0; i < 50; ++i) {
            auto const text = "Seite-" + std::to_string(i * 7) + "/" + std::to_string(i * 131);
            canvas.drawText(text, small, { 36, 700.0 - i * 10 }, canvas.textWidth(text, small));
        }
    });
    CHECK(textOf(document.file).find("…") == std::string::npos);
    CHECK(wordsOf(document.file).size() == 50);
}

TEST_CASE("names in any script can be read back, and all fonts are embedded")
{
    Document document;
    std::vector<std::string> const names { "Grüße.jpg", "Ферма.jpg", "京都の紅葉.jpg", "תמונה.jpg",
        "صورة.jpg", "हिन्दी.jpg", "e\u0301te\u0301.jpg", "ffi.jpg" };
    document.page([&](PdfCanvas& canvas) {
        double y = 700;
        for (auto const& name : names)
            canvas.drawLabel(name, small, { 100, y -= 20, 200, 12 });
    });
    auto const text = textOf(document.file);
    for (auto const* part :
        { "Grüße.jpg", "Ферма.jpg", "京都の紅葉.jpg", "תמונה", "صورة", "हिन्दी", "ffi.jpg" })
        CHECK_MESSAGE(text.find(part) != std::string::npos, part);
    std::istringstream fonts(printed("pdffonts", document.file));
    std::string line;
    std::getline(fonts, line);
    std::getline(fonts, line);
    int count = 0;
    for (; std::getline(fonts, line); ++count)
        CHECK_MESSAGE(line.find("yes yes yes") != std::string::npos, line);
    CHECK(count > 0);
}

TEST_CASE("text that is none is drawn all the same")
{
    Document document;
    document.page([](PdfCanvas& canvas) {
        canvas.drawLabel("k\xF6ln\xFF.jpg", small, { 100, 500, 96, 12 });
        canvas.drawLabel("two\nlines\r\tand\x01more", small, { 100, 460, 196, 12 });
        canvas.drawLabel("", small, { 100, 440, 96, 12 });
        canvas.drawLabel(std::string_view("a\0b", 3), small, { 100, 420, 96, 12 });
        canvas.drawLabel("\U0001F600\U0001F389.jpg", small, { 100, 400, 96, 12 });
        canvas.drawLabel("narrow", small, { 100, 380, 1, 12 });
    });
    auto const text = textOf(document.file);
    CHECK(text.find("k\uFFFDln\uFFFD.jpg") != std::string::npos);
    auto const lines = wordOf(document.file, "lines");
    auto const more = wordOf(document.file, "more");
    REQUIRE(lines);
    REQUIRE(more);
    CHECK(lines->top == doctest::Approx(more->top));
}

TEST_CASE("areas and pictures lie where they were asked for, the right way up")
{
    Document document;
    document.page([&](PdfCanvas& canvas) {
        canvas.fill({ 100, 600, 200, 100 }, 0.95);
        auto bitmap = filled({ 20, 10 }, { 0, 0, 255, 255 });
        for (int y = 5; y < 10; ++y)
            for (int x = 0; x < 20; ++x) {
                bitmap.row(y)[x * 4] = 255;
                bitmap.row(y)[x * 4 + 2] = 0;
            }
        canvas.drawPicture(document.writer.pictureOf(bitmap, 0.95), { 150, 620, 100, 50 });
    });
    auto const pixels = pixelsOf(document.file);
    CHECK(pixels.width == 596);
    CHECK(pixels.height == 842);
    checkColor(pixels.at(90, 190), { 255, 255, 255 });
    checkColor(pixels.at(120, 190), { 242, 242, 242 });
    checkColor(pixels.at(200, 841 - 665), { 254, 0, 0 });
    checkColor(pixels.at(200, 841 - 625), { 0, 0, 254 });
    checkColor(pixels.at(147, 841 - 645), { 242, 242, 242 });
    checkColor(pixels.at(253, 841 - 645), { 242, 242, 242 });
}

TEST_CASE("pictures are embedded as JPEG with all their pixels")
{
    Document document;
    document.page([&](PdfCanvas& canvas) {
        canvas.drawPicture(document.writer.pictureOf(noise({ 289, 193 }), 1), { 100, 600, 90, 60 });
    });
    auto const images = imagesOf(document.file);
    REQUIRE(images.size() == 1);
    CHECK(images[0].width == 289);
    CHECK(images[0].height == 193);
    CHECK(images[0].color == "rgb");
    CHECK(images[0].encoding == "jpeg");
}

TEST_CASE("what is transparent shows the tone behind it")
{
    Document document;
    document.page([&](PdfCanvas& canvas) {
        auto const clear = filled({ 8, 8 }, { 0, 0, 0, 0 });
        auto const half = filled({ 8, 8 }, { 0, 0, 128, 128 });
        canvas.drawPicture(document.writer.pictureOf(clear, 0.95), { 100, 600, 50, 50 });
        canvas.drawPicture(document.writer.pictureOf(half, 0.95), { 200, 600, 50, 50 });
    });
    auto const pixels = pixelsOf(document.file);
    checkColor(pixels.at(125, 841 - 625), { 242, 242, 242 });
    checkColor(pixels.at(225, 841 - 625), { 248, 120, 120 });
}

TEST_CASE("thirty busy pictures on a page stay below one and a half megabytes")
{
    Document document;
    auto const canvas = document.begin();
    for (int i = 0; i < 30; ++i)
        canvas->drawPicture(document.writer.pictureOf(noise({ 289, 193 }), 1),
            { 36.0 + i % 5 * 106, 100.0 + i / 5 * 106, 96, 64 });
    REQUIRE(canvas->endPage());
    REQUIRE_FALSE(canvas->finish().has_value());
    CHECK(bytesOf(document.file).size() < 1'500'000);
}

TEST_CASE("pages are written as they end")
{
    Document document;
    auto const canvas = document.begin();
    auto const part = document.folder.url().child("a.pdf.part");
    std::uintmax_t before = 0;
    for (int page = 0; page < 4; ++page) {
        for (int i = 0; i < 12; ++i)
            canvas->drawPicture(
                document.writer.pictureOf(noise({ 289, 289 }), 1), { 36, 100, 96, 96 });
        REQUIRE(canvas->endPage());
        auto const size = std::filesystem::file_size(part.cString());
        CHECK(size > before);
        before = size;
    }
}

TEST_CASE("a document with something that cannot be drawn is not taken for a whole one")
{
    Document document;
    document.folder.file("a.pdf", "old");
    {
        auto const canvas = document.begin();
        REQUIRE(canvas->endPage());
        auto const picture = document.writer.pictureOf(filled({ 3, 2 }, { 9, 9, 9, 255 }), 1);
        canvas->drawPicture(picture, { 0, 0, 0, 0 });
        CHECK_FALSE(canvas->endPage());
        CHECK(canvas->finish() == WriteProblem::other);
    }
    CHECK(bytesOf(document.file) == "old");
    CHECK(namesIn(document.folder.url()) == std::set<std::string> { "a.pdf" });
}

TEST_CASE("a document that is dropped leaves nothing behind")
{
    Document document;
    {
        auto const canvas = document.begin();
        canvas->drawPicture(document.writer.pictureOf(noise({ 2000, 2000 }), 1), { 0, 0, 9, 9 });
        REQUIRE(canvas->endPage());
        canvas->drawText("more", small, { 36, 36 }, wide);
    }
    CHECK(namesIn(document.folder.url()).empty());
}

TEST_CASE("a drive that is full ends the document, and the old one stays")
{
    Document document;
    auto const drive = document.folder.url().child("drive");
    bool const mayMount = withPrivateMounts([&] {
        REQUIRE(mountMemory(drive, "size=1m"));
        document.file = document.folder.file("drive/a.pdf", "%PDF-old");
        {
            auto const canvas = document.begin();
            int pages = 0;
            do
                canvas->drawPicture(
                    document.writer.pictureOf(noise({ 500, 500 }), 1), { 0, 0, 300, 300 });
            while (canvas->endPage() && ++pages < 100);
            CHECK(pages < 20);
            CHECK(canvas->finish() == WriteProblem::noSpace);
        }
        CHECK(bytesOf(document.file) == "%PDF-old");
        CHECK(namesIn(drive) == std::set<std::string> { "a.pdf", "a.pdf.part" });
        ::umount2(drive.cString(), MNT_DETACH);
    });
    if (!mayMount)
        MESSAGE("skipped: this user may not mount file systems");
}

TEST_CASE("a drive that fills up at the very end fails the document, too")
{
    Document document;
    auto const drive = document.folder.url().child("drive");
    bool const mayMount = withPrivateMounts([&] {
        REQUIRE(mountMemory(drive, "size=16k"));
        document.file = drive.child("a.pdf");
        document.folder.file("drive/photos", std::string(16 * 1024, 'p'));
        auto const canvas = document.begin();
        canvas->drawText("small", small, { 36, 36 }, wide);
        CHECK(canvas->endPage()); // still gathered
        CHECK(canvas->finish() == WriteProblem::noSpace);
        ::umount2(drive.cString(), MNT_DETACH);
    });
    if (!mayMount)
        MESSAGE("skipped: this user may not mount file systems");
}

TEST_CASE("documents can be written side by side, on threads of their own")
{
    std::vector<std::thread> threads;
    std::array<Document, 4> documents;
    for (auto& document : documents)
        threads.emplace_back([&document] {
            auto begun = document.writer.begin({ document.file, "T", "P", a4 });
            auto const canvas = std::move(std::get<std::unique_ptr<PdfCanvas>>(begun));
            for (int page = 0; page < 3; ++page) {
                for (int i = 0; i < 50; ++i)
                    canvas->drawLabel(
                        "京都 IMG " + std::to_string(i), small, { 36, 40.0 + i * 15, 90, 12 });
                static_cast<void>(canvas->endPage());
            }
            static_cast<void>(canvas->finish());
        });
    for (auto& thread : threads)
        thread.join();
    for (auto const& document : documents) {
        CHECK(isSoundPdf(document.file));
        CHECK(pdfInfo(document.file, "Pages") == "3");
    }
}
