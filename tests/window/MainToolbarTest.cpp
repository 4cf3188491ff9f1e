#include "window/MainToolbar.h"
#include "support/Desk.h"
#include "support/FakeSharing.h"
#include "window/ShareMenu.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Item = MainToolbar::Item;
using Kind = MenuEntry::Kind;

struct Bar {
    Desk desk;
    FakeSharing sharing;
    ShareMenu share { desk.model(), sharing, desk.clipboard };
    MainToolbar bar { desk.model(), &share };

    explicit Bar(int count)
    {
        Names names;
        for (int i = 1; i <= count; ++i)
            names.push_back(std::to_string(i) + ".jpg");
        desk.open("/b", names);
    }

    MenuEntry entry(Item item, std::string_view title) const
    {
        for (auto const& each : bar.menu(item))
            if (each.title == title)
                return each;
        FAIL("no entry " << title);
        return {};
    }

    bool isChecked(std::string_view title) const { return entry(Item::view, title).isChecked; }
};

Names titles(std::vector<MenuEntry> const& menu)
{
    Names all;
    for (auto const& entry : menu)
        all.push_back(entry.kind == Kind::divider ? "-" : entry.title);
    return all;
}

} // namespace

TEST_CASE("the toolbar holds size, view, slideshow, trash, actions and share in this order")
{
    Names labels;
    Names symbols;
    for (auto const item : MainToolbar::order) {
        labels.emplace_back(MainToolbar::title(item));
        symbols.emplace_back(MainToolbar::symbol(item));
    }
    CHECK(labels
        == Names { "Vorschaugröße", "Ansicht", "Diashow", "Papierkorb", "Aktionen", "Teilen" });
    CHECK(symbols
        == Names { "", "arrow.up.arrow.down", "play.rectangle", "trash", "ellipsis.circle",
            "square.and.arrow.up" });
    CHECK(MainToolbar::smallerSymbol == "square.grid.3x3");
    CHECK(MainToolbar::largerSymbol == "square.grid.2x2");
    CHECK(MainToolbar::sliderWidth == 110);
    CHECK(MainToolbar::sizeSpacing == 4);
    CHECK(MainToolbar::sidebarSymbol == "sidebar.left");
    CHECK(MainToolbar::sidebarTip(true) == "Seitenleiste ausblenden (⌃⌘S)");
    CHECK(MainToolbar::sidebarTip(false) == "Seitenleiste einblenden (⌃⌘S)");
    CHECK(MainToolbar::folderTip == "Ordner öffnen (⌘O)");
    CHECK(MainToolbar::searchPrompt == "Dateiname filtern");
}

TEST_CASE("the tips that do not change")
{
    Bar const test(3);
    CHECK(test.bar.tip(Item::thumbnailSize) == "Vorschaugröße (+ / \u2212)");
    CHECK(test.bar.tip(Item::view) == "Sortierung & Ansicht");
    CHECK(test.bar.tip(Item::actions) == "Aktionen für die Auswahl");
    CHECK(test.bar.tip(Item::share) == "Auswahl teilen");
}

TEST_CASE("with none or one photo marked the tips speak of all photos and of one")
{
    Bar test(40);
    for (int marked = 0; marked < 2; ++marked) {
        CAPTURE(marked);
        CHECK(test.bar.tip(Item::slideshow) == "Diashow aller Fotos (⇧⌘D)");
        CHECK(test.bar.tip(Item::trash) == "In den Papierkorb (⌘⌫, rückgängig mit ⌘Z)");
        test.desk.model().toggle(7);
    }
}

TEST_CASE("with two and more marked the tips speak of them")
{
    Bar test(1200);
    auto& model = test.desk.model();
    model.toggle(1);
    model.toggle(2);
    CHECK(test.bar.tip(Item::slideshow) == "Diashow der Auswahl (⇧⌘D)");
    CHECK(test.bar.tip(Item::trash)
        == "2 ausgewählte Fotos in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)");
    model.toggle(3);
    CHECK(test.bar.tip(Item::trash)
        == "3 ausgewählte Fotos in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)");
    model.selectAll();
    CHECK(test.bar.tip(Item::trash)
        == "1200 ausgewählte Fotos in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)");
}

TEST_CASE("the view menu lists the sort keys and what is shown")
{
    Bar const test(1);
    auto const menu = test.bar.menu(Item::view);
    CHECK(titles(menu)
        == Names { "Sortieren nach", "Name", "Änderungsdatum", "Dateigröße", "Aufsteigend", "-",
            "Unterordner einbeziehen", "Dateinamen anzeigen", "Auflösung anzeigen" });
    CHECK(menu[0].kind == Kind::heading);
    for (std::size_t at : { 1U, 2U, 3U })
        CHECK(menu[at].kind == Kind::choice);
    for (std::size_t at : { 4U, 6U, 7U, 8U })
        CHECK(menu[at].kind == Kind::toggle);
}

TEST_CASE("the sort keys are a choice of one")
{
    Bar test(3);
    CHECK(test.isChecked("Name"));
    CHECK_FALSE(test.isChecked("Dateigröße"));
    test.entry(Item::view, "Dateigröße").run();
    CHECK(*test.desk.model().sortKey == SortKey::size);
    CHECK(test.isChecked("Dateigröße"));
    CHECK_FALSE(test.isChecked("Name"));
    test.entry(Item::view, "Änderungsdatum").run();
    CHECK(*test.desk.model().sortKey == SortKey::date);
    test.entry(Item::view, "Name").run();
    CHECK(*test.desk.model().sortKey == SortKey::name);
}

TEST_CASE("the toggles show what is set and turn it round")
{
    Bar test(3);
    auto& model = test.desk.model();
    CHECK(test.isChecked("Aufsteigend"));
    test.entry(Item::view, "Aufsteigend").run();
    CHECK_FALSE(*model.ascending);
    CHECK(test.desk.names() == Names { "3.jpg", "2.jpg", "1.jpg" });
    CHECK_FALSE(test.isChecked("Aufsteigend"));

    CHECK_FALSE(test.isChecked("Unterordner einbeziehen"));
    test.entry(Item::view, "Unterordner einbeziehen").run();
    CHECK(*model.includeSubfolders);
    CHECK(test.isChecked("Unterordner einbeziehen"));

    test.entry(Item::view, "Dateinamen anzeigen").run();
    CHECK_FALSE(*model.showFilenames);
    test.entry(Item::view, "Auflösung anzeigen").run();
    CHECK_FALSE(*model.showResolution);
    CHECK_FALSE(test.isChecked("Dateinamen anzeigen"));
    CHECK_FALSE(test.isChecked("Auflösung anzeigen"));
}

TEST_CASE("a toggle that was shown off turns on, even if it is on by then")
{
    Bar test(1);
    auto const shownOff = test.entry(Item::view, "Unterordner einbeziehen");
    test.desk.model().setIncludeSubfolders(true);
    shownOff.run();
    CHECK(*test.desk.model().includeSubfolders);
}

TEST_CASE("the actions menu lists its entries, none of them checkable")
{
    Bar const test(1);
    auto const menu = test.bar.menu(Item::actions);
    CHECK(titles(menu)
        == Names { "In den Papierkorb legen  (⌘⌫)", "Verschieben nach …", "Kopieren nach …",
            "In Zwischenablage kopieren", "-", "Kontaktabzug (PDF) …", "-", "Im Finder zeigen",
            "Mit Standard-App öffnen", "-", "Alle auswählen", "Auswahl aufheben",
            "Auswahl umkehren" });
    for (auto const& entry : menu)
        CHECK((entry.kind == Kind::action || entry.kind == Kind::divider));
}

TEST_CASE("the actions do what they say to the marked photos")
{
    Bar test(5);
    auto& model = test.desk.model();
    auto const run = [&](std::string_view title) {
        test.entry(Item::actions, title).run();
        test.desk.settle();
    };
    run("Alle auswählen");
    CHECK(model.selection->size() == 5);
    run("Auswahl aufheben");
    CHECK(model.selection->empty());
    model.toggle(0);
    run("Auswahl umkehren");
    CHECK(test.desk.marked() == Names { "2.jpg", "3.jpg", "4.jpg", "5.jpg" });
    run("In Zwischenablage kopieren");
    CHECK(test.desk.clipboard.contents.size() == 4);
    run("Im Finder zeigen");
    CHECK(test.desk.workspace.revealed.size() == 1);
    run("Mit Standard-App öffnen");
    CHECK(test.desk.workspace.opened.size() == 4);
    run("Kontaktabzug (PDF) …");
    CHECK(*model.showContactSheetDialog);
    run("In den Papierkorb legen  (⌘⌫)");
    CHECK(test.desk.names() == Names { "1.jpg" });
}

TEST_CASE("move and copy ask for a folder, each in its own words")
{
    Bar test(2);
    test.desk.model().toggle(0);
    test.entry(Item::actions, "Verschieben nach …").run();
    test.entry(Item::actions, "Kopieren nach …").run();
    REQUIRE(test.desk.panels.requests.size() == 2);
    CHECK(test.desk.panels.requests[0].message != test.desk.panels.requests[1].message);
}

TEST_CASE("slideshow and trash act at once, the folder button asks for a folder")
{
    Bar test(3);
    auto& model = test.desk.model();
    test.bar.perform(Item::slideshow);
    CHECK(*model.isSlideshow);
    CHECK_FALSE(test.bar.isShown());
    model.closeViewer();
    CHECK(test.bar.isShown());
    model.toggle(1);
    test.bar.perform(Item::trash);
    test.desk.settle();
    CHECK(test.desk.names() == Names { "1.jpg", "3.jpg" });
    test.bar.chooseFolder();
    CHECK(test.desk.panels.requests.size() == 1);
}

TEST_CASE("while text is edited the trash button does nothing")
{
    Bar test(3);
    test.desk.model().toggle(1);
    test.desk.window.editsText = true;
    test.bar.perform(Item::trash);
    test.desk.settle();
    CHECK(test.desk.names().size() == 3);
}

TEST_CASE("without photos every item does nothing and harms nothing")
{
    Desk desk;
    FakeSharing sharing;
    sharing.installed = { { "mail", "E-Mail" } };
    ShareMenu share { desk.model(), sharing, desk.clipboard };
    MainToolbar bar { desk.model(), &share };
    bar.perform(Item::slideshow);
    bar.perform(Item::trash);
    for (auto const item : { Item::actions, Item::share })
        for (auto const& entry : bar.menu(item))
            if (entry.run)
                entry.run();
    desk.settle();
    CHECK_FALSE(*desk.model().isSlideshow);
    CHECK_FALSE(*desk.model().showContactSheetDialog);
    CHECK(sharing.shared.empty());
    CHECK(desk.clipboard.contents.empty());
    CHECK(desk.status().empty());
}

TEST_CASE("share offers what is installed for the marked photos, else for the one with the cursor")
{
    Bar test(3);
    test.sharing.installed = { { "mail", "E-Mail" } };
    auto& model = test.desk.model();
    model.moveCursor(+1, Extend::no);
    CHECK(titles(test.bar.menu(Item::share)) == Names { "E-Mail", "Dateien kopieren" });
    CHECK(test.sharing.refreshes == 1);
    test.entry(Item::share, "E-Mail").run();
    model.toggle(1);
    model.toggle(2);
    test.entry(Item::share, "E-Mail").run();
    REQUIRE(test.sharing.shared.size() == 2);
    CHECK(test.sharing.shared[0].files == std::vector { FileUrl("/b/1.jpg") });
    CHECK(test.sharing.shared[1].files == std::vector { FileUrl("/b/2.jpg"), FileUrl("/b/3.jpg") });
}

TEST_CASE("the size goes from 80 to 400 points without steps")
{
    Bar test(1);
    CHECK(MainToolbar::minimumSize() == 80);
    CHECK(MainToolbar::maximumSize() == 400);
    test.bar.setThumbSize(123.4);
    CHECK(test.bar.thumbSize() == 123.4);
    test.desk.type("+");
    CHECK(test.bar.thumbSize() == 153.4);
    test.bar.setThumbSize(1000);
    CHECK(test.bar.thumbSize() == 400);
}

TEST_CASE("what has no room is in a menu of its own")
{
    Bar test(3);
    auto const menu = test.bar.overflow(2);
    CHECK(titles(menu) == Names { "Diashow", "Papierkorb", "Aktionen", "Teilen" });
    CHECK(menu[2].kind == Kind::submenu);
    CHECK(titles(menu[2].entries()) == titles(test.bar.menu(Item::actions)));
    menu[0].run();
    CHECK(*test.desk.model().isSlideshow);
    CHECK(test.bar.overflow(MainToolbar::order.size()).empty());
}
