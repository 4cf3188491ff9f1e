#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("an opened folder becomes the root and the folder that is shown")
{
    Desk desk;
    desk.open("/b", { "2.jpg", "10.jpg", "1.jpg", "text.txt" });
    auto& model = desk.model();
    CHECK(*model.rootFolder == FileUrl("/b"));
    CHECK(*model.folder == FileUrl("/b"));
    CHECK(*model.folders == std::vector { FileUrl("/b") });
    CHECK(desk.names() == Names { "1.jpg", "2.jpg", "10.jpg" });
    CHECK(model.allItems().size() == 3);
    CHECK(model.windowTitle() == "b");
    CHECK(desk.window.focusCount == 1);
    CHECK(desk.preferences.text("lastRoot") == "/b");
    CHECK(desk.preferences.text("lastFolder") == "/b");
    CHECK(desk.preferences.texts("lastFolders") == Names { "/b" });
}

TEST_CASE("a path that does not exist is ignored")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.model().open(FileUrl("/b/weg"));
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b"));
    CHECK(*desk.model().rootFolder == FileUrl("/b"));
    CHECK(desk.model().scanGeneration() == 1);
}

TEST_CASE("opened places are standardized")
{
    Desk desk;
    desk.folder("/b/fest");
    desk.files.addFolder("/b/fest/../fest/.");
    desk.model().open(FileUrl("/b/fest/../fest/."));
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b/fest"));
    CHECK(*desk.model().rootFolder == FileUrl("/b/fest"));
}

TEST_CASE("an image file opens its folder and, once that is scanned, itself in the viewer")
{
    Desk desk;
    desk.folder("/b", { "1.jpg", "2.jpg", "3.jpg" });
    desk.model().open(FileUrl("/b/2.jpg"));
    desk.finish(0);
    CHECK(*desk.model().folder == FileUrl("/b"));
    CHECK(desk.model().pendingFileToShow() == FileUrl("/b/2.jpg"));
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    desk.settle();
    CHECK(*desk.model().viewerIndex == 1);
    CHECK(*desk.model().cursor == 1);
    CHECK_FALSE(desk.model().pendingFileToShow().has_value());
}

TEST_CASE("an opened file that is no photo shows its folder only")
{
    Desk desk;
    desk.folder("/b", { "1.jpg", "text.txt" });
    desk.model().open(FileUrl("/b/text.txt"));
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK_FALSE(desk.model().pendingFileToShow().has_value());
}

TEST_CASE("an image of the folder that is shown opens at once, without a scan")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().open(FileUrl("/b/2.jpg"));
    desk.finish(0);
    CHECK(*desk.model().viewerIndex == 1);
    CHECK(desk.background.pending() == 0);
    CHECK(desk.model().scanGeneration() == 1);
}

TEST_CASE("a file of the folder that is shown, but not among its photos, changes nothing")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.files.addFile(FileUrl("/b/neu.jpg"));
    desk.model().open(FileUrl("/b/neu.jpg"));
    desk.settle();
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK(desk.model().scanGeneration() == 1);
}

TEST_CASE("opening a folder that is one of several shows it alone")
{
    Desk desk;
    desk.folder("/b/1", { "1.jpg" });
    desk.folder("/b/2", { "2.jpg" });
    desk.model().selectFolders({ FileUrl("/b/1"), FileUrl("/b/2") }, FocusGallery::no);
    desk.settle();
    desk.model().open(FileUrl("/b/1"));
    desk.settle();
    CHECK(*desk.model().folders == std::vector { FileUrl("/b/1") });
    CHECK(desk.names() == Names { "1.jpg" });
}

TEST_CASE("of two places opened in succession the later one is shown")
{
    Desk desk;
    desk.folder("/alt", { "alt.jpg" });
    desk.folder("/neu", { "neu.jpg" });
    desk.model().open(FileUrl("/alt"));
    desk.model().open(FileUrl("/neu"));
    SUBCASE("whichever is found first")
    {
        desk.finish(1);
    }
    SUBCASE("in the order of asking")
    {
        desk.finish(0);
    }
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/neu"));
    CHECK(*desk.model().rootFolder == FileUrl("/neu"));
    CHECK(desk.names() == Names { "neu.jpg" });
    CHECK(desk.model().scanGeneration() == 1);
}

TEST_CASE("a choice in the sidebar is newer than a place that is still being looked at")
{
    Desk desk;
    desk.folder("/langsam");
    desk.folder("/b", { "1.jpg" });
    desk.model().open(FileUrl("/langsam"));
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b"));
}

TEST_CASE("the folder panel starts in the open folder and opens what is chosen")
{
    Desk desk;
    desk.model().chooseFolder();
    REQUIRE(desk.panels.requests.size() == 1);
    CHECK(desk.panels.requests[0].button == "Öffnen");
    CHECK(desk.panels.requests[0].message == "Wähle einen Ordner mit Fotos");
    CHECK_FALSE(desk.panels.requests[0].start.has_value());
    desk.panels.choose(desk.folder("/b", { "1.jpg" }));
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
    desk.model().chooseFolder();
    CHECK(desk.panels.requests[1].start == FileUrl("/b"));
}

TEST_CASE("a panel that is answered after the window has gone opens nothing")
{
    Desk desk;
    desk.folder("/b");
    desk.model().chooseFolder();
    desk.browser.reset();
    desk.panels.choose(FileUrl("/b"));
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("setting a root watches it and leaves the shown folders")
{
    Desk desk;
    desk.open("/b/fest", { "1.jpg" });
    desk.model().setRoot(FileUrl("/b/"), AlsoSelect::no);
    CHECK(*desk.model().rootFolder == FileUrl("/b"));
    CHECK(*desk.model().folder == FileUrl("/b/fest"));
    CHECK(desk.preferences.text("lastRoot") == "/b");
    REQUIRE(desk.folderEvents.running().size() == 1);
    CHECK(desk.folderEvents.running()[0]->root == FileUrl("/b"));
}

TEST_CASE("a root can be selected along with being set")
{
    Desk desk;
    desk.folder("/b", { "1.jpg" });
    desk.model().setRoot(FileUrl("/b"), AlsoSelect::yes);
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK(desk.window.focusCount == 1);
}

TEST_CASE("folders stand in natural order, however they were clicked")
{
    Desk desk;
    desk.model().selectFolders(
        { FileUrl("/b/Tag 10"), FileUrl("/b/tag 2/"), FileUrl("/b/./Tag 1") }, FocusGallery::no);
    CHECK(*desk.model().folders
        == std::vector { FileUrl("/b/Tag 1"), FileUrl("/b/tag 2"), FileUrl("/b/Tag 10") });
    CHECK(*desk.model().folder == FileUrl("/b/Tag 1"));
    CHECK(desk.model().windowTitle() == "3 Ordner");
    CHECK(desk.preferences.text("lastFolder") == "/b/Tag 1");
    CHECK(desk.preferences.texts("lastFolders") == Names { "/b/Tag 1", "/b/tag 2", "/b/Tag 10" });
}

TEST_CASE("choosing no folder, or those already shown, changes nothing")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.model().toggle(0);
    desk.model().selectFolders({}, FocusGallery::yes);
    desk.model().selectFolders({ FileUrl("/b/") }, FocusGallery::yes);
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK(desk.model().selection->size() == 1);
    CHECK(desk.model().scanGeneration() == 1);
    CHECK(desk.window.focusCount == 1);
}

TEST_CASE("showing other folders starts afresh")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    desk.folder("/c", { "1.jpg" });
    desk.model().toggle(0);
    desk.model().openViewer(1);
    desk.model().setSearchText("jpg");
    desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
    auto& model = desk.model();
    CHECK(model.items->empty());
    CHECK(model.allItems().empty());
    CHECK(model.selection->empty());
    CHECK_FALSE(model.cursor->has_value());
    CHECK_FALSE(model.anchor().has_value());
    CHECK_FALSE(model.viewerIndex->has_value());
    CHECK(model.searchText->empty());
    CHECK(*model.isLoading);
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK_FALSE(*model.isLoading);
}

TEST_CASE("an image waiting for its folder is forgotten when other folders are shown")
{
    Desk desk;
    desk.folder("/b", { "1.jpg" });
    desk.folder("/c", { "1.jpg" });
    desk.model().open(FileUrl("/b/1.jpg"));
    desk.finish(0);
    desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
    CHECK_FALSE(desk.model().pendingFileToShow().has_value());
    desk.settle();
    CHECK_FALSE(desk.model().viewerIndex->has_value());
}

TEST_CASE("the sidebar keeps the keyboard")
{
    Desk desk;
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    CHECK(desk.window.focusCount == 0);
}

TEST_CASE("folders can be shown before there is a window")
{
    Desk desk;
    desk.model().setWindow(nullptr);
    desk.open("/b", { "1.jpg" });
    CHECK(desk.names() == Names { "1.jpg" });
}

TEST_CASE("a name that is not UTF-8 is opened and shown with replacement characters")
{
    Desk desk;
    desk.open("/gr\xFC\xDF", { "m\xE4rz.jpg" });
    CHECK(desk.names() == Names { "m\xE4rz.jpg" });
    CHECK(desk.model().windowTitle() == "gr\uFFFD\uFFFD");
    CHECK(desk.preferences.text("lastFolder") == "/gr\xFC\xDF");
}

TEST_CASE("a folder that cannot be read yields no photos and no message")
{
    Desk desk;
    desk.model().selectFolders({ FileUrl("/weg") }, FocusGallery::no);
    desk.settle();
    CHECK(desk.model().items->empty());
    CHECK_FALSE(*desk.model().isLoading);
    CHECK_FALSE(desk.model().status->has_value());
}
