#include "SheetDesk.h"
#include "contactsheet/ContactSheetLayout.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using End = ContactSheetResult::End;

std::vector<std::size_t> cellsOn(FakePdf::Written const& written)
{
    std::vector<std::size_t> counts;
    for (auto const& page : written.pages)
        counts.push_back(page.fills.size());
    counts.pop_back(); // the one after the last
    return counts;
}

} // namespace

TEST_CASE("a document has the title and the program's name")
{
    SheetDesk desk;
    CHECK(desk.render(SheetDesk::job(desk.photos(1))) == ContactSheetResult {});
    CHECK(desk.written().document.title == "Urlaub");
    CHECK(desk.written().document.creator == "Pixelhain");
    CHECK(desk.written().document.page == PageSize { 595.28, 841.89 });
    CHECK(desk.written().document.target == FileUrl("/Bilder/Kontaktabzug.pdf"));
    CHECK(desk.written().isFinished);
}

TEST_CASE("without a title page and document are called Kontaktabzug")
{
    SheetDesk desk;
    auto job = SheetDesk::job(desk.photos(1));
    job.options.title.clear();
    CHECK(desk.render(job).end == End::done);
    CHECK(desk.written().document.title == "Kontaktabzug");
    CHECK(desk.written().pages[0].texts[0].text == "Kontaktabzug");
}

TEST_CASE("every page has the whole header, with its own number")
{
    SheetDesk desk;
    CHECK(desk.render(SheetDesk::job(desk.photos(31))).end == End::done);
    for (auto const& [page, text] : {
             std::pair(0, "31 Fotos  ·  16.11.2026  ·  Seite 1/2"),
             std::pair(1, "31 Fotos  ·  16.11.2026  ·  Seite 2/2"),
         }) {
        auto const& drawn = desk.written().pages[static_cast<std::size_t>(page)];
        REQUIRE(drawn.texts.size() == 2);
        CHECK(drawn.texts[0].text == "Urlaub");
        CHECK(drawn.texts[0].style == ContactSheetLayout::titleStyle);
        CHECK(drawn.texts[0].at == PagePoint { 36, 841.89 - 51 });
        CHECK(drawn.texts[1].text == text);
        CHECK(drawn.texts[1].style == ContactSheetLayout::infoStyle);
        CHECK(drawn.texts[1].at.x + drawn.texts[1].width == doctest::Approx(559.28));
        REQUIRE(drawn.lines.size() == 1);
        CHECK(drawn.lines[0].y == doctest::Approx(783.89));
    }
}

TEST_CASE("pages take as many photos as they hold, the last one what is left")
{
    SheetDesk desk;
    CHECK(desk.render(SheetDesk::job(desk.photos(1))).end == End::done);
    CHECK(cellsOn(desk.written()) == std::vector<std::size_t> { 1 });
    CHECK(desk.render(SheetDesk::job(desk.photos(30))).end == End::done);
    CHECK(cellsOn(desk.written()) == std::vector<std::size_t> { 30 });
    CHECK(desk.render(SheetDesk::job(desk.photos(31))).end == End::done);
    CHECK(cellsOn(desk.written()) == std::vector<std::size_t> { 30, 1 });
}

TEST_CASE("a sheet of no photos is a page with a header")
{
    SheetDesk desk;
    CHECK(desk.render(SheetDesk::job({})).end == End::done);
    CHECK(cellsOn(desk.written()) == std::vector<std::size_t> { 0 });
}

TEST_CASE("each photo has its square, its picture and below them its name")
{
    SheetDesk desk;
    auto const photos = desk.photos(2);
    auto const job = SheetDesk::job(photos);
    CHECK(desk.render(job).end == End::done);
    ContactSheetLayout const layout(job.options, 2, job.options.page());
    auto const& page = desk.written().pages[0];
    for (std::size_t i = 0; i < 2; ++i) {
        auto const cell = layout.cellRect(i);
        CHECK(page.fills.at(i) == cell);
        CHECK(page.pictures.at(i) == ContactSheetLayout::pictureRect(cell, { 4, 3 }));
        CHECK(page.labels.at(i).text == photos[i].name());
        CHECK(page.labels.at(i).at == PagePoint { cell.x, cell.y - 13 });
        CHECK(page.labels.at(i).width == cell.width);
        CHECK(page.labels.at(i).style == layout.labelStyle);
    }
}

TEST_CASE("names can be left out")
{
    SheetDesk desk;
    auto job = SheetDesk::job(desk.photos(3));
    job.options.showNames = false;
    CHECK(desk.render(job).end == End::done);
    CHECK(desk.written().pages[0].labels.empty());
    CHECK(desk.written().pages[0].pictures.size() == 3);
}

TEST_CASE("a photo without a picture keeps its square and its name, and is told of")
{
    SheetDesk desk;
    auto job = SheetDesk::job(desk.photos(3));
    desk.decoder.remove(job.photos[1].url);
    std::vector<std::string> missing;
    job.withoutPicture = [&](PhotoItem const& photo) { missing.emplace_back(photo.name()); };
    CHECK(desk.render(job).end == End::done);
    auto const& page = desk.written().pages[0];
    CHECK(page.fills.size() == 3);
    CHECK(page.pictures.size() == 2);
    CHECK(page.labels.size() == 3);
    CHECK(missing == std::vector<std::string> { "1.jpg" });
}

TEST_CASE("names that are not UTF-8 are printed with replacement characters")
{
    SheetDesk desk;
    CHECK(desk.render(SheetDesk::job({ { FileUrl("/Bilder/k\xF6ln.jpg") } })).end == End::done);
    CHECK(desk.written().pages[0].labels[0].text == "k\uFFFDln.jpg");
}

TEST_CASE("thumbnails are asked for at three pixels a point")
{
    SheetDesk desk;
    CHECK(desk.render(SheetDesk::job(desk.photos(1))).end == End::done);
    auto const asked = desk.decoder.decodes();
    REQUIRE(asked.size() == 1);
    CHECK(asked[0].maxPixel == 289);
    CHECK(asked[0].previews == EmbeddedPreviews::prefer);
}

TEST_CASE("progress counts the pages that are written")
{
    SheetDesk desk;
    auto job = SheetDesk::job(desk.photos(61));
    std::vector<std::pair<std::size_t, std::size_t>> heard;
    job.pageDone = [&](std::size_t done, std::size_t pages) {
        CHECK(desk.run.handled == done);
        heard.emplace_back(done, pages);
    };
    CHECK(desk.render(job).end == End::done);
    CHECK(heard == decltype(heard) { { 1, 3 }, { 2, 3 }, { 3, 3 } });
}

TEST_CASE("a cancelled sheet is dropped where it stands")
{
    SheetDesk desk;
    desk.pdf.whenPageEnds = [&] { desk.run.cancel.set(); };
    CHECK(desk.render(SheetDesk::job(desk.photos(61))).end == End::cancelled);
    CHECK(desk.written().isDropped);
    CHECK(desk.written().pages.size() == 2);
    CHECK(desk.decoder.decodes().size() < 61);
}

TEST_CASE("a sheet cancelled before it begins draws nothing")
{
    SheetDesk desk;
    desk.run.cancel.set();
    CHECK(desk.render(SheetDesk::job(desk.photos(1))).end == End::cancelled);
    CHECK(desk.written().isDropped);
    CHECK(desk.decoder.decodes().empty());
}

TEST_CASE("a file that cannot be begun fails the sheet before any picture is made")
{
    SheetDesk desk;
    desk.pdf.cannotBegin = WriteProblem::notAllowed;
    CHECK(desk.render(SheetDesk::job(desk.photos(1)))
        == ContactSheetResult { End::failed, WriteProblem::notAllowed });
    CHECK(desk.decoder.decodes().empty());
}

TEST_CASE("a drive that is full ends the sheet there")
{
    SheetDesk desk;
    desk.pdf.pagesUntilFull = 1;
    CHECK(desk.render(SheetDesk::job(desk.photos(300)))
        == ContactSheetResult { End::failed, WriteProblem::noSpace });
    CHECK(desk.written().isDropped);
    CHECK(desk.decoder.decodes().size() < 100);
}

TEST_CASE("a file that cannot be put in place fails the sheet")
{
    SheetDesk desk;
    desk.pdf.cannotFinish = WriteProblem::taken;
    CHECK(desk.render(SheetDesk::job(desk.photos(1)))
        == ContactSheetResult { End::failed, WriteProblem::taken });
}
