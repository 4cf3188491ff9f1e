#include "model/RecentFolders.h"
#include "support/FakePreferences.h"
#include "support/Urls.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

std::vector<std::string> titles(std::vector<std::string> const& paths)
{
    return recents::titles(urls(paths), FileUrl("/home/eva"));
}

using Titles = std::vector<std::string>;

} // namespace

TEST_CASE("a folder that is opened comes to the front and stands in the list once")
{
    auto const list = urls({ "/a", "/b", "/c" });
    CHECK(recents::with(list, FileUrl("/d")) == urls({ "/d", "/a", "/b", "/c" }));
    CHECK(recents::with(list, FileUrl("/c")) == urls({ "/c", "/a", "/b" }));
    CHECK(recents::with({}, FileUrl("/c")) == urls({ "/c" }));
}

TEST_CASE("ten folders are remembered")
{
    std::vector<FileUrl> list;
    for (int i = 1; i <= 12; ++i)
        list = recents::with(list, FileUrl("/" + std::to_string(i)));
    CHECK(list.size() == 10);
    CHECK(list.front() == FileUrl("/12"));
    CHECK(list.back() == FileUrl("/3"));
    CHECK(recents::with(list, FileUrl("/3")).size() == 10);
}

TEST_CASE("the list is stored and read as bytes")
{
    FakePreferences preferences;
    CHECK(recents::read(preferences).empty());
    auto const list = urls({ "/b\xE4r\xFF", "/a, b", "/ \n" });
    recents::write(preferences, list);
    CHECK(recents::read(preferences) == list);
    recents::write(preferences, {});
    CHECK(recents::read(preferences).empty());
}

TEST_CASE("of a list that was edited by hand the usable part is read")
{
    FakePreferences preferences;
    preferences.setTexts("recentFolders",
        { "/a/", "relativ", "", std::string("/n\0l", 4), "/x/../a", "/b//c", "/a" });
    CHECK(recents::read(preferences) == urls({ "/a", "/b/c" }));
    std::vector<std::string> many;
    for (int i = 0; i < 30; ++i)
        many.push_back("/" + std::to_string(i));
    preferences.setTexts("recentFolders", many);
    CHECK(recents::read(preferences).size() == 10);
    CHECK(recents::read(preferences).back() == FileUrl("/9"));
    preferences.setNumber("recentFolders", 3);
    CHECK(recents::read(preferences).empty());
}

TEST_CASE("a folder is called by its name where that is enough")
{
    CHECK(titles({ "/media/a/Urlaub", "/home/eva/Fest", "/" }) == Titles { "Urlaub", "Fest", "/" });
    CHECK(titles({}).empty());
}

TEST_CASE("folders of one name are told apart by the folder each lies in")
{
    CHECK(titles({ "/m/2023/Urlaub", "/Fest", "/m/2024/Urlaub" })
        == Titles { "2023/Urlaub", "Fest", "2024/Urlaub" });
    CHECK(titles({ "/home/eva/Fotos", "/Fotos", "/media/Fotos" })
        == Titles { "~/Fotos", "/Fotos", "media/Fotos" });
}

TEST_CASE("folders whose last two names are the same are told apart by their paths")
{
    CHECK(titles({ "/m/1/2023/Urlaub", "/home/eva/2023/Urlaub", "/n/2024/Urlaub" })
        == Titles { "/m/1/2023/Urlaub", "~/2023/Urlaub", "2024/Urlaub" });
}

TEST_CASE("the home folder is a tilde")
{
    CHECK(titles({ "/home/eva", "/media/eva" }) == Titles { "~", "eva" });
    CHECK(recents::shownPath(FileUrl("/home/eva"), FileUrl("/home/eva")) == "~");
    CHECK(recents::shownPath(FileUrl("/home/eva/a/b"), FileUrl("/home/eva")) == "~/a/b");
    CHECK(
        recents::shownPath(FileUrl("/home/evangelia"), FileUrl("/home/eva")) == "/home/evangelia");
    CHECK(recents::shownPath(FileUrl("/home/eva"), FileUrl()) == "/home/eva");
    CHECK(recents::shownPath(FileUrl("/srv"), FileUrl("/")) == "/srv");
}

TEST_CASE("names that are not text are shown with replacement characters, and told apart if alike")
{
    CHECK(titles({ "/a/\xE4" }) == Titles { "\uFFFD" });
    CHECK(titles({ "/a/\xE4", "/b/\xFC" }) == Titles { "a/\uFFFD", "b/\uFFFD" });
}
