#include "window/ContentView.h"
#include "support/LongList.h"
#include "window/EmptyStateView.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("without a folder the window invites to open one")
{
    Desk desk;
    ContentView const content(desk.model(), desk.loop);
    CHECK(content.detail() == ContentView::Detail::noFolder);
    CHECK(content.title() == "Pixelhain");
    CHECK(content.subtitle().empty());
    auto const view = EmptyStateView::noFolder();
    CHECK(view.symbol == "photo.stack");
    CHECK(view.symbolSize == 56);
    CHECK(view.spacing == 16);
    CHECK(view.text == "Ordner wählen oder hierher ziehen");
    CHECK(view.button == "Ordner öffnen …");
    CHECK_FALSE(view.hint.has_value());
}

TEST_CASE("a folder without photos says so and points to the subfolders")
{
    Desk desk;
    desk.open("/b", {});
    ContentView const content(desk.model(), desk.loop);
    CHECK(content.detail() == ContentView::Detail::noPhotos);
    CHECK(content.subtitle() == "0 Fotos");
    auto const view = EmptyStateView::noPhotos(desk.model());
    CHECK(view.symbol == "photo.on.rectangle.angled");
    CHECK(view.symbolSize == 44);
    CHECK(view.spacing == 10);
    CHECK(view.text == "Keine Fotos in diesem Ordner");
    CHECK(view.isTextSecondary);
    CHECK_FALSE(view.button.has_value());
    CHECK(view.hint == "Unterordner findest du links in der Seitenleiste.");
    desk.model().setIncludeSubfolders(true);
    CHECK_FALSE(EmptyStateView::noPhotos(desk.model()).hint.has_value());
}

TEST_CASE("a search that matches nothing says so, without the hint")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    desk.model().setSearchText("x");
    ContentView const content(desk.model(), desk.loop);
    CHECK(content.detail() == ContentView::Detail::noPhotos);
    CHECK(EmptyStateView::noPhotos(desk.model()).text == "Keine Treffer");
    CHECK_FALSE(EmptyStateView::noPhotos(desk.model()).hint.has_value());
}

TEST_CASE("what is said of an empty list fits it while something else is looked for")
{
    LongList test;
    auto& model = test.model();
    model.setSearchText("nichts");
    test.desk.settle();
    REQUIRE(model.items->empty());
    model.setAscending(false);
    model.setSearchText("");
    REQUIRE(model.items->empty());
    CHECK(EmptyStateView::noPhotos(model).text == "Keine Treffer");
    CHECK_FALSE(EmptyStateView::noPhotos(model).hint.has_value());
}

TEST_CASE("photos show the gallery, with their number as subtitle")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    ContentView const content(desk.model(), desk.loop);
    CHECK(content.detail() == ContentView::Detail::gallery);
    CHECK(content.title() == "b");
    CHECK(content.subtitle() == "1 Fotos");
}

TEST_CASE("the viewer lies over the gallery and hides the toolbar")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    ContentView const content(desk.model(), desk.loop);
    CHECK(content.showsToolbar());
    CHECK_FALSE(content.showsViewer());
    desk.model().openViewer(0);
    CHECK_FALSE(content.showsToolbar());
    CHECK(content.showsViewer());
    CHECK(content.detail() == ContentView::Detail::gallery);
}

TEST_CASE("of several files let go over the window only the first is opened")
{
    Desk desk;
    desk.folder("/b", { "1.jpg", "2.jpg" });
    desk.folder("/c");
    ContentView content(desk.model(), desk.loop);
    content.dropTargeted = true;
    CHECK(content.drop(std::vector { FileUrl("/b/2.jpg"), FileUrl("/c") }));
    CHECK_FALSE(content.dropTargeted);
    CHECK(desk.background.pending() == 0);
    desk.loop.settle();
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b"));
    CHECK(*desk.model().viewerIndex == 1);
}

TEST_CASE("a drop without files is refused")
{
    Desk desk;
    ContentView content(desk.model(), desk.loop);
    content.dropTargeted = true;
    CHECK_FALSE(content.drop({}));
    CHECK_FALSE(content.dropTargeted);
    desk.settle();
    CHECK_FALSE(desk.model().folder->has_value());
}

TEST_CASE("a drop whose window has gone opens nothing")
{
    Desk desk;
    desk.folder("/b");
    {
        ContentView content(desk.model(), desk.loop);
        CHECK(content.drop(std::vector { FileUrl("/b") }));
    }
    desk.loop.settle();
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("the content restores the folders shown last when it appears")
{
    Desk desk;
    desk.folder("/b", { "1.jpg" });
    desk.preferences.setTexts("lastFolders", { "/b" });
    ContentView content(desk.model(), desk.loop);
    content.appeared();
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
}

TEST_CASE("the model learns of its window after the current turn")
{
    Desk desk;
    desk.model().setWindow(nullptr);
    FakeMainWindow window;
    ContentView content(desk.model(), desk.loop);
    content.hosted(nullptr);
    desk.loop.settle();
    CHECK(desk.model().window() == nullptr);
    content.hosted(&window);
    CHECK(desk.model().window() == nullptr);
    desk.loop.settle();
    CHECK(desk.model().window() == &window);
}

TEST_CASE("content that has lost its window takes none from the model")
{
    Desk desk;
    ContentView content(desk.model(), desk.loop);
    content.hosted(nullptr);
    desk.loop.settle();
    CHECK(desk.model().window() == &desk.window);
}

TEST_CASE("content that appears again installs no second key monitor")
{
    Desk desk;
    int installed = 0;
    int removed = 0;
    auto const install = [&] {
        ++installed;
        return Task([&] { ++removed; });
    };
    {
        ContentView first(desk.model(), desk.loop);
        first.monitorKeys(install);
        ContentView second(desk.model(), desk.loop);
        second.monitorKeys(install);
    }
    CHECK(installed == 1);
    CHECK(removed == 0);
    desk.browser.reset();
    CHECK(removed == 1);
}

TEST_CASE("nobody is invited to choose a folder while one is about to be shown")
{
    Desk desk;
    ContentView content(desk.model(), desk.loop);
    int changes = 0;
    auto const observation = desk.model().observe([&] { ++changes; });
    desk.model().open(FileUrl("/gone"));
    CHECK(content.detail() == ContentView::Detail::gallery);
    desk.settle();
    CHECK(content.detail() == ContentView::Detail::noFolder);
    CHECK(changes == 1);
}
