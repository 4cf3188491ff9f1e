#include "contactsheet/ContactSheetDialog.h"
#include "ExportDesk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("the dialog opens with the usual options, titled after the folder")
{
    ExportDesk desk;
    desk.openPhotos(2);
    ContactSheetDialog const dialog(desk.model(), desk.sheets);
    ContactSheetOptions usual;
    usual.title = "Urlaub";
    CHECK(usual.columns == 5);
    CHECK(usual.paper == PaperSize::a4);
    CHECK_FALSE(usual.landscape);
    CHECK(usual.showNames);
    CHECK(dialog.options() == usual);
    CHECK(dialog.columnsText() == "Spalten: 5");
}

TEST_CASE("of several folders the title has all names")
{
    ExportDesk desk;
    auto const a = desk.folder("/Bilder/Anna", { "1.jpg" });
    auto const b = desk.folder("/Bilder/K\xF6ln", { "2.jpg" });
    desk.model().selectFolders({ a, b }, FocusGallery::no);
    desk.settle();
    CHECK(ContactSheetDialog(desk.model(), desk.sheets).options().title == "Anna, K\uFFFDln");
}

TEST_CASE("the count says whether all photos are taken")
{
    ExportDesk desk;
    desk.openPhotos(40);
    auto const text = [&] { return ContactSheetDialog(desk.model(), desk.sheets).countText(); };
    CHECK(text() == "Alle 40 Fotos");
    desk.model().toggle(7);
    CHECK(text() == "Alle 40 Fotos");
    desk.model().toggle(8);
    desk.model().toggle(9);
    CHECK(text() == "3 ausgewählte Fotos");
    desk.model().selectAll();
    CHECK(text() == "Alle 40 Fotos");
}

TEST_CASE("columns stay between 2 and 10")
{
    ExportDesk desk;
    desk.openPhotos(1);
    ContactSheetDialog dialog(desk.model(), desk.sheets);
    dialog.setColumns(1);
    CHECK(dialog.columnsText() == "Spalten: 2");
    dialog.setColumns(11);
    CHECK(dialog.columnsText() == "Spalten: 10");
    dialog.setColumns(7);
    CHECK(dialog.options().columns == 7);
}

TEST_CASE("the dialog is shown only while there are photos")
{
    ExportDesk desk;
    desk.openPhotos(0);
    desk.model().setShowContactSheetDialog(true);
    CHECK_FALSE(desk.model().showContactSheetDialog);
    desk.openPhotos(1);
    desk.model().reload();
    desk.settle();
    desk.model().setShowContactSheetDialog(true);
    CHECK(desk.model().showContactSheetDialog);
}

TEST_CASE("cancelling closes the dialog and does nothing else")
{
    ExportDesk desk;
    desk.openPhotos(1);
    desk.model().setShowContactSheetDialog(true);
    ContactSheetDialog dialog(desk.model(), desk.sheets);
    dialog.cancel();
    desk.settle();
    CHECK_FALSE(desk.model().showContactSheetDialog);
    CHECK(desk.panels.saveRequests.empty());
}

TEST_CASE("the export begins in the turn after the dialog has closed, with its options")
{
    ExportDesk desk;
    desk.openPhotos(1);
    desk.model().setShowContactSheetDialog(true);
    {
        ContactSheetDialog dialog(desk.model(), desk.sheets);
        dialog.setTitle("Sommer");
        dialog.setPaper(PaperSize::letter);
        dialog.setLandscape(true);
        dialog.setShowNames(false);
        dialog.create();
    }
    CHECK_FALSE(desk.model().showContactSheetDialog);
    CHECK(desk.panels.saveRequests.empty());
    desk.loop.settle();
    REQUIRE(desk.panels.saveRequests.size() == 1);
    desk.panels.choose(FileUrl("/Urlaub/a.pdf"));
    desk.settle();
    auto const& written = *desk.pdf().written.at(0);
    CHECK(written.document.title == "Sommer");
    CHECK(written.document.page == PageSize { 792, 612 });
    CHECK(written.pages[0].labels.empty());
}

TEST_CASE("nothing is remembered from one opening to the next")
{
    ExportDesk desk;
    desk.openPhotos(1);
    ContactSheetDialog first(desk.model(), desk.sheets);
    first.setColumns(9);
    first.setTitle("Sommer");
    first.create();
    desk.settle();
    ContactSheetDialog const second(desk.model(), desk.sheets);
    CHECK(second.options().columns == 5);
    CHECK(second.options().title == "Urlaub");
}
