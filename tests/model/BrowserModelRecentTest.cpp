#include "support/Desk.h"
#include "support/Urls.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

std::vector<FileUrl> recent(Desk& desk)
{
    return desk.model().recentFolders;
}

} // namespace

TEST_CASE("opened folders are remembered over the next start, and no disk is asked for them")
{
    Desk desk;
    desk.open("/b/fest", { "1.jpg" });
    desk.open("/b/urlaub", { "2.jpg" });
    CHECK(recent(desk) == urls({ "/b/urlaub", "/b/fest" }));
    desk.start();
    CHECK(recent(desk) == urls({ "/b/urlaub", "/b/fest" }));
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("the list of remembered folders is written only when it changes")
{
    Desk desk;
    desk.open("/b/urlaub", {});
    auto const writes = desk.preferences.writes["recentFolders"];
    desk.open("/b/urlaub", {});
    CHECK(desk.preferences.writes["recentFolders"] == writes);
}

TEST_CASE("of an opened image its folder is remembered, of what does not exist nothing")
{
    Desk desk;
    auto const folder = desk.folder("/b", { "1.jpg" });
    desk.model().open(folder.child("1.jpg"));
    desk.settle();
    CHECK(recent(desk) == urls({ "/b" }));
    desk.model().open(FileUrl("/weg"));
    desk.settle();
    CHECK(recent(desk) == urls({ "/b" }));
}

TEST_CASE("a folder that is made the root and shown is remembered, the way up and a choice are not")
{
    Desk desk;
    desk.folder("/b/fest", { "1.jpg" });
    desk.model().setRoot(FileUrl("/b/fest"), AlsoSelect::yes);
    desk.settle();
    CHECK(recent(desk) == urls({ "/b/fest" }));
    desk.model().showParentFolder();
    desk.model().selectFolders(urls({ "/b" }), FocusGallery::no);
    desk.settle();
    CHECK(recent(desk) == urls({ "/b/fest" }));
}

TEST_CASE("folders that are shown again at a start are not remembered anew")
{
    Desk desk;
    desk.open("/b/fest", {});
    desk.open("/b/urlaub", {});
    desk.model().clearRecentFolders();
    desk.start();
    desk.model().restoreLastFolders();
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b/urlaub"));
    CHECK(recent(desk).empty());
}

TEST_CASE("a remembered folder opens as if it were chosen")
{
    Desk desk;
    desk.open("/b/\xE4lter", { "1.jpg" });
    desk.open("/b/urlaub", { "2.jpg" });
    desk.model().openRecent(FileUrl("/b/\xE4lter"));
    CHECK(desk.model().isLookingForFolders());
    desk.settle();
    CHECK(*desk.model().rootFolder == FileUrl("/b/\xE4lter"));
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK(recent(desk) == urls({ "/b/\xE4lter", "/b/urlaub" }));
    CHECK(desk.status().empty());
}

TEST_CASE("a remembered folder that is not there is told and kept, and opens when it is back")
{
    Desk desk;
    desk.open("/b/fest", { "1.jpg" });
    desk.open("/b/urlaub", { "2.jpg" });
    auto const both = urls({ "/b/urlaub", "/b/fest" });
    desk.files.remove(FileUrl("/b/fest"));
    desk.model().openRecent(FileUrl("/b/fest"));
    desk.settle();
    CHECK(desk.status() == "Der Ordner „fest“ ist nicht da");
    CHECK(recent(desk) == both);
    CHECK(*desk.model().folder == FileUrl("/b/urlaub"));
    CHECK(desk.names() == Names { "2.jpg" });
    desk.start();
    CHECK(recent(desk) == both);
    desk.folder("/b/fest", { "1.jpg" });
    desk.model().openRecent(FileUrl("/b/fest"));
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
    CHECK(recent(desk) == urls({ "/b/fest", "/b/urlaub" }));
}

TEST_CASE("where a file lies now, a remembered folder is not there")
{
    Desk desk;
    desk.open("/b/fest", {});
    desk.files.remove(FileUrl("/b/fest"));
    desk.files.addFile(FileUrl("/b/fest"));
    desk.model().openRecent(FileUrl("/b/fest"));
    desk.settle();
    CHECK(desk.status() == "Der Ordner „fest“ ist nicht da");
    CHECK(recent(desk) == urls({ "/b/fest" }));
}

TEST_CASE("a remembered folder that is missing does not keep the last folders from being shown")
{
    Desk desk;
    desk.open("/b/urlaub", { "1.jpg" });
    desk.start();
    desk.model().openRecent(FileUrl("/weg"));
    desk.model().restoreLastFolders();
    desk.finish(1);
    CHECK_FALSE(desk.model().folder->has_value());
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/b/urlaub"));
    CHECK(desk.status() == "Der Ordner „weg“ ist nicht da");
}

TEST_CASE("the list of remembered folders can be cleared, also for the next start")
{
    Desk desk;
    desk.open("/b/fest", {});
    desk.model().clearRecentFolders();
    CHECK(recent(desk).empty());
    desk.start();
    CHECK(recent(desk).empty());
}
