#include "app/AppDelegate.h"
#include "ports/Screens.h"
#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct FakeScreens final : Screens {
    std::vector<Screen> all() const override { return screens; }
    std::vector<Screen> screens { { 1920, 1080, 2 } };
};

struct Program {
    Desk desk;
    FakeScreens screens;
    std::vector<std::size_t> screenCounts;
    std::optional<AppDelegate> delegate;

    Program()
    {
        delegate.emplace(desk.model(), desk.loop, screens,
            [this](std::span<Screen const> all) { screenCounts.push_back(all.size()); });
    }
};

} // namespace

TEST_CASE("the display size is computed at the start and whenever the screens change")
{
    Program program;
    CHECK(program.screenCounts.empty());
    program.delegate->applicationDidFinishLaunching();
    CHECK(program.screenCounts == std::vector<std::size_t> { 1 });
    program.screens.screens.push_back({ 2560, 1440, 1 });
    program.delegate->applicationDidChangeScreenParameters();
    CHECK(program.screenCounts == std::vector<std::size_t> { 1, 2 });
}

TEST_CASE("coming back to the program refreshes the tree, not the gallery")
{
    Program program;
    program.desk.open("/b", { "1.jpg" });
    auto const tree = program.desk.model().treeVersion.get();
    auto const counts = program.desk.model().countsVersion.get();
    program.delegate->applicationDidBecomeActive();
    CHECK(*program.desk.model().treeVersion == tree + 1);
    CHECK(*program.desk.model().countsVersion == counts + 1);
    CHECK(program.desk.background.pending() == 0);
}

TEST_CASE("of three images handed over the first one is shown in its folder")
{
    Program program;
    auto const folder = program.desk.folder("/b", { "1.jpg", "2.jpg", "3.jpg" });
    auto const other = program.desk.folder("/c", { "4.jpg" });
    program.delegate->openUrls(
        std::vector { folder.child("2.jpg"), folder.child("1.jpg"), other.child("4.jpg") });
    CHECK(program.desk.background.pending() == 0);
    program.desk.loop.settle();
    program.desk.settle();
    CHECK(*program.desk.model().folder == folder);
    CHECK(*program.desk.model().viewerIndex == 1);
    CHECK(program.desk.model().scanGeneration() == 1);
}

TEST_CASE("a folder handed over becomes the root and is shown")
{
    Program program;
    auto const folder = program.desk.folder("/b", { "1.jpg" });
    program.delegate->openUrls(std::vector { folder });
    program.desk.loop.settle();
    program.desk.settle();
    CHECK(*program.desk.model().rootFolder == folder);
    CHECK(program.desk.names() == Names { "1.jpg" });
}

TEST_CASE("an empty list handed over does nothing")
{
    Program program;
    program.delegate->openUrls({});
    program.desk.loop.settle();
    CHECK(program.desk.background.pending() == 0);
}

TEST_CASE("closing the last window quits")
{
    Program program;
    CHECK(program.delegate->applicationShouldTerminateAfterLastWindowClosed());
}
