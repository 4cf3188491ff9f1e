#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// A desk whose settings remember these folders and this root.
void remember(Desk& desk, std::vector<std::string> const& folders, std::string const& root = {})
{
    desk.preferences.setTexts("lastFolders", folders);
    if (!root.empty())
        desk.preferences.setText("lastRoot", root);
}

} // namespace

TEST_CASE("the folders shown last are shown again with their root")
{
    Desk desk;
    desk.folder("/b/urlaub", { "1.jpg" });
    desk.folder("/b/fest", { "2.jpg" });
    remember(desk, { "/b/fest", "/b/urlaub" }, "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/b"));
    CHECK(*desk.model().folders == std::vector { FileUrl("/b/fest"), FileUrl("/b/urlaub") });
    CHECK(*desk.model().folder == FileUrl("/b/fest"));
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
}

TEST_CASE("what one run showed, the next one restores")
{
    Desk desk;
    desk.folder("/b/urlaub", { "1.jpg" });
    desk.folder("/b/fest", { "2.jpg" });
    desk.model().setRoot(FileUrl("/b"), AlsoSelect::no);
    desk.model().selectFolders({ FileUrl("/b/urlaub"), FileUrl("/b/fest") }, FocusGallery::yes);
    desk.start();
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/b"));
    CHECK(*desk.model().folders == std::vector { FileUrl("/b/fest"), FileUrl("/b/urlaub") });
}

TEST_CASE("without a root the first remembered folder is opened as the new one")
{
    Desk desk;
    desk.folder("/b/urlaub", { "1.jpg" });
    desk.folder("/b/fest");
    remember(desk, { "/b/urlaub", "/b/fest" });
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/b/urlaub"));
    CHECK(*desk.model().folders == std::vector { FileUrl("/b/urlaub") });
}

TEST_CASE("a root that is gone lets the first remembered folder be the new one")
{
    Desk desk;
    desk.folder("/b/urlaub");
    desk.folder("/b/fest");
    remember(desk, { "/b/urlaub", "/b/fest" }, "/weg");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/b/urlaub"));
    CHECK(*desk.model().folders == std::vector { FileUrl("/b/urlaub") });
    CHECK(desk.preferences.text("lastRoot") == "/b/urlaub");
}

TEST_CASE("folders that are gone are dropped without a word")
{
    Desk desk;
    desk.folder("/b/fest");
    desk.folder("/b");
    remember(desk, { "/b/weg", "/b/fest" }, "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().folders == std::vector { FileUrl("/b/fest") });
    CHECK_FALSE(desk.model().status->has_value());
}

TEST_CASE("with no folder left the window stays empty")
{
    Desk desk;
    desk.folder("/b", { "datei.jpg" });
    remember(desk, { "/b/weg", "/b/datei.jpg" }, "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK_FALSE(desk.model().folder->has_value());
    CHECK_FALSE(desk.model().rootFolder->has_value());
}

TEST_CASE("only folders within the root are restored with it")
{
    Desk desk;
    desk.folder("/b/fest");
    desk.folder("/bilder");
    remember(desk, { "/bilder", "/b/fest", "/b" }, "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/b"));
    CHECK(*desk.model().folders == std::vector { FileUrl("/b"), FileUrl("/b/fest") });
}

TEST_CASE("a root that holds none of the folders gives way to the first of them")
{
    Desk desk;
    desk.folder("/bilder");
    desk.folder("/b");
    remember(desk, { "/bilder" }, "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/bilder"));
    CHECK(*desk.model().folders == std::vector { FileUrl("/bilder") });
}

TEST_CASE("the single folder of an older settings file is restored")
{
    Desk desk;
    desk.folder("/b");
    desk.preferences.setText("lastFolder", "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b"));
}

TEST_CASE("a remembered list counts even if it is empty")
{
    Desk desk;
    desk.folder("/b");
    desk.preferences.setTexts("lastFolders", {});
    desk.preferences.setText("lastFolder", "/b");
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK_FALSE(desk.model().folder->has_value());
}

TEST_CASE("nothing is restored over a folder that is open")
{
    Desk desk;
    desk.folder("/alt");
    remember(desk, { "/alt" });
    desk.open("/neu", { "1.jpg" });
    remember(desk, { "/alt" });
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/neu"));
}

TEST_CASE("a folder handed over at the start is shown instead of the last ones")
{
    Desk desk;
    desk.folder("/alt");
    desk.folder("/neu");
    remember(desk, { "/alt" });
    SUBCASE("when its answer comes first")
    {
        desk.model().open(FileUrl("/neu"));
        desk.model().restoreLastFolders();
        desk.settle();
    }
    SUBCASE("when its answer comes last, without a scan of the last ones")
    {
        desk.model().open(FileUrl("/neu"));
        desk.model().restoreLastFolders();
        desk.finish(1);
        CHECK_FALSE(desk.model().folder->has_value());
        desk.settle();
        CHECK(desk.model().scanGeneration() == 1);
    }
    SUBCASE("when it is asked for while the last ones are looked for")
    {
        desk.model().restoreLastFolders();
        desk.model().open(FileUrl("/neu"));
        desk.settle();
    }
    CHECK(*desk.model().folder == FileUrl("/neu"));
}

TEST_CASE("a place handed over at the start that does not exist leaves the last folders")
{
    Desk desk;
    desk.folder("/alt");
    remember(desk, { "/alt" });
    desk.model().open(FileUrl("/weg"));
    desk.model().restoreLastFolders();
    SUBCASE("found to be missing first")
    {
        desk.finish(0);
    }
    SUBCASE("found to be missing last")
    {
        desk.finish(1);
    }
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/alt"));
}

TEST_CASE("the model says while it looks for the folders to restore or to open")
{
    Desk desk;
    desk.folder("/b");
    remember(desk, { "/b" });
    CHECK_FALSE(desk.model().isLookingForFolders());
    desk.model().restoreLastFolders();
    CHECK(desk.model().isLookingForFolders());
    desk.finish(0);
    CHECK_FALSE(desk.model().isLookingForFolders());
    desk.model().open(FileUrl("/weg"));
    CHECK(desk.model().isLookingForFolders());
    desk.settle();
    CHECK_FALSE(desk.model().isLookingForFolders());
}

TEST_CASE("the main thread looks at no disk to restore")
{
    Desk desk;
    desk.folder("/b");
    remember(desk, { "/b" });
    desk.model().restoreLastFolders();
    CHECK(desk.background.pending() == 1);
    CHECK_FALSE(desk.model().folder->has_value());
}
