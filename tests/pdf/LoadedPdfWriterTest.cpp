#include "pdf/LoadedPdfWriter.h"
#include "posix/PosixFileReplacement.h"
#include "support/PdfTools.h"
#include "support/Places.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <filesystem>
#include <memory>
#include <variant>

using namespace pixelhain;

namespace {

constexpr PageSize a4 { 595.28, 841.89 };

void checkNothingIsWritten(TemporaryFolder const& folder, std::string const& module)
{
    PosixFileReplacements files;
    LoadedPdfWriter writer(files, module);
    auto const begun = writer.begin({ folder.url().child("a.pdf"), "Urlaub", "Pixelhain", a4 });
    REQUIRE(std::holds_alternative<WriteProblem>(begun));
    CHECK(std::get<WriteProblem>(begun) == WriteProblem::other);
    CHECK_FALSE(writer.pictureOf(Bitmap::allocate({ 8, 8 }, true), 1));
    CHECK(std::filesystem::is_empty(folder.url().path()));
}

} // namespace

TEST_CASE("the module beside the program writes PDF files")
{
    TemporaryFolder const folder;
    auto const file = folder.url().child("a.pdf");
    PosixFileReplacements files;
    LoadedPdfWriter writer(files);
    auto begun = writer.begin({ file, "Urlaub", "Pixelhain", a4 });
    REQUIRE(std::holds_alternative<std::unique_ptr<PdfCanvas>>(begun));
    auto const canvas = std::move(std::get<std::unique_ptr<PdfCanvas>>(begun));
    auto const picture = writer.pictureOf(Bitmap::allocate({ 8, 8 }, true), 1);
    CHECK(picture);
    canvas->drawPicture(picture, { 100, 100, 50, 50 });
    canvas->drawText("Strand", {}, { 50, 50 }, 200);
    REQUIRE(canvas->endPage());
    CHECK_FALSE(canvas->finish());
    CHECK(isSoundPdf(file));
}

TEST_CASE("without the module nothing can be written and nothing is touched")
{
    TemporaryFolder const folder;
    checkNothingIsWritten(folder, std::string(folder.url().child("none.so").path()));
}

TEST_CASE("a module of another version is as good as none")
{
    auto const module = buildFolder() + "/pixelhain-other-pdf.so";
    REQUIRE(std::filesystem::exists(module));
    checkNothingIsWritten(TemporaryFolder(), module);
}
