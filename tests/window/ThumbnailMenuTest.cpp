#include "window/ThumbnailMenu.h"
#include "support/Desk.h"
#include "support/FakeSharing.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct MenuDesk {
    Desk desk;
    FakeSharing sharing;
    ThumbnailMenu menu { { desk.model(), desk.workspace, sharing, desk.clipboard } };
    std::vector<MenuEntry> entries;

    MenuDesk() { desk.open("/b", { "1.jpg", "2.jpg", "3.jpg", "4.jpg", "5.jpg", "6.jpg" }); }

    Names open(std::size_t index)
    {
        entries = menu.open(index);
        return titles(entries);
    }

    static Names titles(std::vector<MenuEntry> const& all)
    {
        Names found;
        for (auto const& entry : all)
            found.push_back(entry.title);
        return found;
    }

    void choose(std::size_t entry)
    {
        entries.at(entry).run();
        desk.settle();
    }

    void mark(std::initializer_list<std::size_t> indices)
    {
        for (auto const index : indices)
            desk.model().toggle(index);
    }
};

using Calls = std::vector<std::vector<FileUrl>>;

enum Entry : std::size_t { show, toggle, divider, trash, reveal, openFile, share };

std::vector<FileUrl> photos(std::initializer_list<int> numbers)
{
    std::vector<FileUrl> all;
    for (auto const number : numbers)
        all.push_back(FileUrl("/b/" + std::to_string(number) + ".jpg"));
    return all;
}

} // namespace

TEST_CASE("the menu of a photo that is not marked has these entries")
{
    MenuDesk m;
    m.mark({ 1, 2, 3, 4, 5 });
    CHECK(m.open(0)
        == Names { "Öffnen", "Auswählen", "", "In den Papierkorb", "Im Finder zeigen",
            "Mit Standard-App öffnen", "Teilen …" });
    CHECK(m.entries[divider].kind == MenuEntry::Kind::divider);
    CHECK(m.entries[share].kind == MenuEntry::Kind::submenu);
}

TEST_CASE("the menu of a marked photo counts what goes to the trash")
{
    MenuDesk m;
    m.mark({ 1, 2, 3, 4, 5 });
    CHECK(m.open(2)
        == Names { "Öffnen", "Auswahl entfernen", "", "5 Fotos in den Papierkorb",
            "Im Finder zeigen", "Mit Standard-App öffnen", "Teilen …" });
}

TEST_CASE("one marked photo is not counted")
{
    MenuDesk m;
    m.mark({ 2 });
    CHECK(m.open(2)[trash] == "In den Papierkorb");
}

TEST_CASE("on a photo that is not marked the menu acts on that one alone")
{
    MenuDesk m;
    m.mark({ 1, 2 });
    (void)m.open(0);
    m.choose(reveal);
    CHECK(m.desk.workspace.revealed == Calls { photos({ 1 }) });
    m.choose(trash);
    CHECK(m.desk.names() == Names { "2.jpg", "3.jpg", "4.jpg", "5.jpg", "6.jpg" });
    CHECK(m.desk.model().selection->size() == 2);
}

TEST_CASE("on a marked photo the menu acts on all marked ones, but opens only that one")
{
    MenuDesk m;
    m.mark({ 4, 1, 2 });
    (void)m.open(2);
    m.choose(reveal);
    CHECK(m.desk.workspace.revealed == Calls { photos({ 2, 3, 5 }) });
    m.choose(openFile);
    CHECK(m.desk.workspace.opened == photos({ 3 }));
    m.choose(trash);
    CHECK(m.desk.names() == Names { "1.jpg", "4.jpg", "6.jpg" });
    CHECK(
        m.desk.model().status.get() == "3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig");
}

TEST_CASE("marked photos that the filter hides are meant, too, after the visible ones")
{
    MenuDesk m;
    m.mark({ 0, 5, 3 });
    m.desk.model().setSearchText("4");
    CHECK(m.menu.targets(0) == photos({ 4, 1, 6 }));
    CHECK(m.open(0)[trash] == "3 Fotos in den Papierkorb");
}

TEST_CASE("the menu shows its photo in the viewer and marks it")
{
    MenuDesk m;
    (void)m.open(3);
    m.choose(show);
    CHECK(*m.desk.model().viewerIndex == 3U);
    m.choose(toggle);
    CHECK(m.desk.model().selection->contains(FileUrl("/b/4.jpg")));
    m.choose(toggle);
    CHECK(m.desk.model().selection->empty());
}

TEST_CASE("a menu stays with its photo when the gallery changes behind it")
{
    MenuDesk m;
    (void)m.open(1);
    m.desk.model().setAscending(false);
    m.choose(show);
    CHECK(*m.desk.model().viewerIndex == 4U);
    m.desk.model().closeViewer();
    m.desk.model().setSearchText("6");
    m.choose(show);
    m.choose(toggle);
    CHECK_FALSE(m.desk.model().viewerIndex->has_value());
    CHECK(m.desk.model().selection->empty());
}

TEST_CASE("beyond the last photo there is no menu")
{
    MenuDesk m;
    CHECK(m.open(6).empty());
}

TEST_CASE("sharing offers what is installed by then, and copying")
{
    MenuDesk m;
    m.mark({ 0, 1 });
    (void)m.open(0);
    CHECK(m.sharing.refreshes == 1);
    CHECK(MenuDesk::titles(m.entries[share].entries()) == Names { "Dateien kopieren" });
    m.sharing.installed = { { "mail", "E-Mail …" }, { "device:1", "Telefon" } };
    auto const ways = m.entries[share].entries();
    CHECK(MenuDesk::titles(ways) == Names { "E-Mail …", "Telefon", "Dateien kopieren" });
    ways[1].run();
    CHECK(m.sharing.shared == std::vector { FakeSharing::Shared { "device:1", photos({ 1, 2 }) } });
    ways[2].run();
    CHECK(m.desk.clipboard.contents == photos({ 1, 2 }));
    CHECK(m.desk.model().status.get() == "2 Fotos in die Zwischenablage kopiert");
}
