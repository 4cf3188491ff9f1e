#include "ExportDesk.h"
#include "contactsheet/ContactSheetMessages.h"
#include <chrono>
#include <doctest/doctest.h>
#include <new>
#include <utility>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

std::vector<std::string> namesOf(std::vector<PhotoItem> const& photos)
{
    std::vector<std::string> names;
    for (auto const& photo : photos)
        names.emplace_back(photo.name());
    return names;
}

} // namespace

TEST_CASE("with less than two photos marked all are exported")
{
    ExportDesk desk;
    desk.openPhotos(40);
    CHECK(contactSheetPhotos(desk.model()).size() == 40);
    desk.model().toggle(3);
    CHECK(contactSheetPhotos(desk.model()).size() == 40);
    CHECK(contactSheetPhotoCount(desk.model()) == 40);
    desk.model().openViewer(5);
    CHECK(contactSheetPhotos(desk.model()).size() == 40);
}

TEST_CASE("two and more marked photos are exported in the gallery's order")
{
    ExportDesk desk;
    desk.openPhotos(5);
    for (std::size_t const index : { 4U, 0U, 2U })
        desk.model().toggle(index);
    CHECK(namesOf(contactSheetPhotos(desk.model())) == Names { "100.jpg", "102.jpg", "104.jpg" });
    CHECK(contactSheetPhotoCount(desk.model()) == 3);
}

TEST_CASE("without photos no panel opens")
{
    ExportDesk desk;
    desk.openPhotos(0);
    desk.sheets.begin({});
    CHECK(desk.panels.saveRequests.empty());
}

TEST_CASE("the panel proposes a PDF named after the window, in the shown folder")
{
    ExportDesk desk;
    auto const folder = desk.openPhotos(1);
    desk.sheets.begin({});
    REQUIRE(desk.panels.saveRequests.size() == 1);
    auto const& request = desk.panels.saveRequests[0];
    CHECK(request.name == "Kontaktabzug Urlaub.pdf");
    CHECK(request.extension == "pdf");
    CHECK(request.start == folder);
}

TEST_CASE("a panel that is dismissed ends the export silently")
{
    ExportDesk desk;
    desk.openPhotos(1);
    desk.sheets.begin({});
    desk.settle();
    CHECK(desk.status().empty());
    CHECK(desk.pdf().written.empty());
}

TEST_CASE("an export says that it began, runs in the background, and opens what came out")
{
    ExportDesk desk;
    desk.openPhotos(3);
    auto const target = desk.begin("a.pdf");
    CHECK(desk.status() == "Erstelle Kontaktabzug mit 3 Fotos …");
    CHECK(desk.background.pending() == 1);
    CHECK(desk.background.lastPriority == Priority::userInitiated);
    CHECK(desk.pdf().written.empty());
    CHECK(desk.model().isBusyWithFiles());

    desk.settle();
    CHECK(desk.status() == "Kontaktabzug gespeichert: a.pdf");
    CHECK(desk.workspace.opened == std::vector<FileUrl> { target });
    CHECK_FALSE(desk.model().isBusyWithFiles());
    REQUIRE(desk.pdf().written.size() == 1);
    CHECK(desk.pdf().written[0]->document.target == target);
    CHECK(desk.pdf().written[0]->pages[0].texts[1].text == "3 Fotos  ·  16.11.2026  ·  Seite 1/1");
}

TEST_CASE("the photos are those of the moment in which the export began")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.sheets.begin({});
    desk.model().setSearchText("101");
    desk.settle();
    desk.panels.choose(FileUrl("/Urlaub/a.pdf"));
    desk.settle();
    CHECK(desk.pdf().written.at(0)->pages[0].fills.size() == 3);
}

TEST_CASE("an export that fails says why and opens nothing")
{
    for (auto const& [problem, reason] : {
             std::pair(WriteProblem::noSpace, "Auf dem Laufwerk ist nicht genug Platz."),
             std::pair(WriteProblem::notAllowed, "An diesem Ort darf nicht geschrieben werden."),
             std::pair(WriteProblem::readOnly, "Das Laufwerk ist schreibgeschützt."),
             std::pair(WriteProblem::noFolder, "Der Ordner ist nicht mehr da."),
             std::pair(WriteProblem::nameTooLong, "Der Name ist zu lang."),
             std::pair(WriteProblem::notAFile, "Was unter diesem Namen liegt, ist keine Datei."),
             std::pair(
                 WriteProblem::taken, "Unter diesem Namen liegt inzwischen eine andere Datei."),
             std::pair(WriteProblem::tooLarge, "Die Datei wird zu groß für dieses Laufwerk."),
             std::pair(WriteProblem::other, "Die Datei konnte nicht geschrieben werden."),
         }) {
        ExportDesk desk;
        desk.openPhotos(3);
        desk.pdf().cannotBegin = problem;
        desk.begin("a.pdf");
        desk.settle();
        CHECK(desk.status() == std::string("Kontaktabzug fehlgeschlagen: ") + reason);
        CHECK(desk.workspace.opened.empty());
        CHECK_FALSE(desk.model().isBusyWithFiles());
    }
}

TEST_CASE("of two exports at once the second waits for the first")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    CHECK(desk.background.pending() == 2); // the second looks what is at its place
    desk.finish(1);
    CHECK(desk.background.pending() == 1);
    desk.finish(0);
    CHECK(desk.status() == "Kontaktabzug gespeichert: a.pdf");
    CHECK(desk.pdf().written.size() == 1);
    CHECK(desk.background.pending() == 1);
    desk.settle();
    CHECK(desk.status() == "Kontaktabzug gespeichert: b.pdf");
    CHECK(desk.pdf().written.size() == 2);
    CHECK(desk.workspace.opened.size() == 2);
}

TEST_CASE("a sheet that waits may replace what was at its place when it was chosen")
{
    ExportDesk desk;
    desk.openPhotos(3);
    ReplacedFile const old { true, 1, 2, 3, 4, 5 };
    desk.files.there[FileUrl("/Urlaub/b.pdf")] = old;
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    desk.begin("c.pdf");
    desk.finish(2);
    desk.finish(1);
    desk.files.there[FileUrl("/Urlaub/c.pdf")] = old;
    desk.settle();
    REQUIRE(desk.pdf().written.size() == 3);
    CHECK_FALSE(desk.pdf().written[0]->document.agreed.has_value()); // it did not wait
    CHECK(desk.pdf().written[1]->document.agreed == old);
    CHECK(desk.pdf().written[2]->document.agreed == ReplacedFile {});
}

TEST_CASE("a lack of memory ends a sheet like a file that cannot be written, and the next begins")
{
    ExportDesk desk;
    desk.openPhotos(3);
    SUBCASE("while a picture is made")
    {
        desk.sheet.decoder.whileDecoding = [&, isFirst = true]() mutable {
            if (std::exchange(isFirst, false))
                throw std::bad_alloc();
        };
    }
    SUBCASE("while a page is drawn")
    {
        desk.pdf().whenPageEnds = [&, isFirst = true]() mutable {
            if (std::exchange(isFirst, false))
                throw std::bad_alloc();
        };
    }
    desk.begin("a.pdf");
    desk.settle();
    CHECK(
        desk.status() == "Kontaktabzug fehlgeschlagen: Die Datei konnte nicht geschrieben werden.");
    CHECK(desk.pdf().written.at(0)->isDropped);
    CHECK(desk.workspace.opened.empty());
    desk.begin("b.pdf");
    desk.settle();
    CHECK(desk.status() == "Kontaktabzug gespeichert: b.pdf");
}

TEST_CASE("Escape tells of every sheet that it cancels")
{
    ExportDesk desk;
    desk.openPhotos(61);
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    SUBCASE("the one under way and the one that waits")
    {
        desk.model().pageWork().cancel();
        desk.settle();
        CHECK(desk.status() == "2 Kontaktabzüge abgebrochen");
    }
    SUBCASE("those that wait, where the one under way was just complete")
    {
        desk.begin("c.pdf");
        desk.pdf().whenPageEnds = [&] {
            if (desk.pdf().written.at(0)->pages.size() == 4) // all three, and the next is empty
                desk.model().pageWork().waiting().clear();
        };
        desk.settle();
        CHECK(desk.status() == "Kontaktabzug gespeichert: a.pdf – 2 weitere abgebrochen");
    }
    SUBCASE("none twice")
    {
        desk.model().pageWork().cancel();
        desk.settle();
        desk.begin("d.pdf");
        desk.settle();
        CHECK(desk.status() == "Kontaktabzug gespeichert: d.pdf");
    }
    CHECK(messages::alsoCancelledContactSheets(1) == " – ein weiterer abgebrochen");
}

TEST_CASE("a sheet on its way to a place is never replaced unasked by the next one")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    desk.begin("b.pdf");
    CHECK(desk.status() == "Unter diesem Namen wird noch ein anderer Kontaktabzug gespeichert");
    desk.begin("a.pdf");
    CHECK(desk.status() == "Unter diesem Namen wird noch ein anderer Kontaktabzug gespeichert");
    desk.settle();
    CHECK(desk.pdf().written.size() == 2);
    desk.begin("a.pdf");
    desk.settle();
    CHECK(desk.pdf().written.size() == 3);
}

TEST_CASE("the places of sheets that were given up are free again")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    desk.model().stopFileWork([] {});
    desk.settle();
    auto const before = desk.pdf().written.size();
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    desk.settle();
    CHECK(desk.pdf().written.size() == before + 2);
}

TEST_CASE("an export that takes long shows the page it is at, and Escape cancels it")
{
    ExportDesk desk;
    desk.openPhotos(61);
    desk.begin("a.pdf");
    std::optional<FileProgress> shown;
    desk.pdf().whenPageEnds = [&] {
        if (shown)
            return;
        desk.loop.advance(200ms); // one page is drawn, but not yet counted
        shown = desk.model().pageProgress;
        CHECK(desk.press(keyCodes::escape));
    };
    desk.settle();
    CHECK(shown == FileProgress { 0, 3 });
    CHECK(desk.status() == "Kontaktabzug abgebrochen");
    CHECK(desk.pdf().written.at(0)->isDropped);
    CHECK_FALSE(desk.model().pageProgress->has_value());
    CHECK(desk.workspace.opened.empty());
}

TEST_CASE("Escape in the viewer closes the viewer, and a document goes on")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.begin("a.pdf");
    desk.loop.advance(200ms);
    REQUIRE(desk.model().pageProgress->has_value());
    desk.model().openViewer(1);
    CHECK(desk.press(keyCodes::escape));
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    desk.settle();
    CHECK(desk.pdf().written.at(0)->isFinished);
}

TEST_CASE("the end of the program waits until a sheet has been given up")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.begin("a.pdf");
    desk.begin("b.pdf");
    bool isOver = false;
    desk.model().stopFileWork([&] { isOver = true; });
    CHECK_FALSE(isOver);
    desk.settle();
    CHECK(isOver);
    REQUIRE(desk.pdf().written.size() <= 1);
    for (auto const& written : desk.pdf().written)
        CHECK(written->isDropped);
}

TEST_CASE("a sheet and a change of files go on side by side")
{
    ExportDesk desk;
    desk.openPhotos(3);
    desk.begin("a.pdf");
    desk.model().trash({ FileUrl("/Urlaub/100.jpg") });
    CHECK(desk.background.pending() == 2);
    desk.settle();
    CHECK(desk.pdf().written.at(0)->isFinished);
    CHECK(desk.model().items->size() == 2);
}

TEST_CASE("proposed names are such that every file system takes")
{
    CHECK(messages::contactSheetFileName("3 Ordner") == "Kontaktabzug 3 Ordner.pdf");
    CHECK(messages::contactSheetFileName("/") == "Kontaktabzug -.pdf");
    CHECK(messages::contactSheetFileName(R"(der "Som")") == "Kontaktabzug der 'Som'.pdf");
    std::string title;
    for (int i = 0; i < 120; ++i)
        title += "ü";
    auto const name = messages::contactSheetFileName(title);
    CHECK(name.size() <= 255);
    CHECK(name.size() > 252);
    CHECK(name.ends_with("ü.pdf"));
}
