#include "app/AppCommands.h"
#include "FakeAppWindows.h"
#include "support/Desk.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct Commands {
    Desk desk;
    FakeAppWindows windows;
    BrowserModel& model = desk.model();
    AppCommands table { model, windows, FileUrl("/home/eva") };

    static AppCommand in(std::vector<AppCommand> const& commands, std::string const& title)
    {
        auto const found = std::find_if(commands.begin(), commands.end(),
            [&](AppCommand const& each) { return each.shownTitle() == title; });
        REQUIRE_MESSAGE(found != commands.end(), title);
        return *found;
    }

    AppCommand operator[](std::string const& title) const
    {
        for (auto const& menu : table.menus())
            for (auto const& each : menu.commands)
                if (each.shownTitle() == title)
                    return each;
        FAIL(title);
        return {};
    }

    void run(std::string const& title)
    {
        REQUIRE((*this)[title].canRun());
        (*this)[title].run();
        desk.settle();
    }

    Names checked() const
    {
        Names titles;
        for (auto const& choice : (*this)["Diashow-Intervall"].entries())
            if (choice.isOn())
                titles.push_back(choice.title);
        return titles;
    }
};

// A menu as people read it: one line for each of its own, kind, title, key and habits.
std::string text(AppMenu const& menu)
{
    constexpr char const* kinds[] = { "---", "button", "toggle", "choice", "submenu" };
    auto text = menu.title + "\n";
    for (auto const& command : menu.commands) {
        text += kinds[static_cast<int>(command.kind)];
        if (command.kind != AppCommand::Kind::divider)
            text += " " + command.shownTitle();
        if (!command.key.empty())
            text += " | " + command.key;
        for (auto const& habit : command.habits)
            text += " | also " + habit;
        text += command.isKeyOfText ? " | of the text\n" : "\n";
    }
    return text;
}

} // namespace

TEST_CASE("the menus hold their commands exactly and in order")
{
    Commands const commands;
    std::string all;
    for (auto const& menu : commands.table.menus())
        all += text(menu);
    CHECK(all == R"(Datei
button Ordner öffnen … | Ctrl+O
submenu Zuletzt geöffnet
button Neu laden | Ctrl+R | also F5
button Ordnerliste aktualisieren | Ctrl+Alt+R
---
button Schließen | Ctrl+W
button Beenden | Ctrl+Q
Bearbeiten
button Papierkorb rückgängig | Ctrl+Z
---
button Ausschneiden | Ctrl+X | of the text
button Kopieren | Ctrl+C | of the text
button Einfügen | Ctrl+V | of the text
button Alles auswählen | Ctrl+A | of the text
Ansicht
button Seitenleiste ausblenden | Meta+Ctrl+S | also F9
button Übergeordneter Ordner | Ctrl+Up | also Alt+Up
---
toggle Vollbild | also F11
Fotos
button Diashow starten | Ctrl+Shift+D
toggle Diashow zufällig
submenu Diashow-Intervall
---
button In den Papierkorb legen | Ctrl+Backspace | also Del
button Verschieben nach … | Ctrl+Shift+M
button Kopieren nach … | Ctrl+Shift+K
button In Zwischenablage kopieren | also Ctrl+C
button Kontaktabzug (PDF) … | Ctrl+P
---
button Im Finder zeigen | Ctrl+Shift+R
button Mit Standard-App öffnen | Ctrl+Down
---
button Alle auswählen  (⌘A)
button Auswahl aufheben  (⇧⌘A)
button Auswahl umkehren
---
toggle Infos einblenden  (I)
toggle Dateinamen anzeigen
toggle Auflösung anzeigen
Hilfe
button Pixelhain-Hilfe | Ctrl+? | also F1
---
button Über Pixelhain
)");
}

TEST_CASE("with an empty gallery there is no slideshow and no contact sheet, all else of photos is")
{
    Commands commands;
    auto const disabled = [&] {
        Names titles;
        for (auto const& command : commands.table.photos().commands)
            if (command.isEnabled && !command.isEnabled())
                titles.push_back(command.shownTitle());
        return titles;
    };
    CHECK(disabled() == Names { "Diashow starten", "Kontaktabzug (PDF) …" });
    CHECK_FALSE(commands["Kontaktabzug (PDF) …"].canRun());
    commands.desk.open("/b", { "1.jpg" });
    CHECK(disabled().empty());
    commands.model.setSearchText("nichts davon");
    commands.desk.settle();
    CHECK(disabled() == Names { "Diashow starten", "Kontaktabzug (PDF) …" });
}

TEST_CASE("most commands are always there")
{
    Commands const commands;
    Names conditional;
    for (auto const& menu : commands.table.menus())
        for (auto const& command : menu.commands)
            if (command.isEnabled)
                conditional.push_back(command.shownTitle());
    CHECK(conditional
        == Names { "Zuletzt geöffnet", "Papierkorb rückgängig", "Ausschneiden", "Kopieren",
            "Einfügen", "Alles auswählen", "Übergeordneter Ordner", "Diashow starten",
            "Kontaktabzug (PDF) …" });
}

TEST_CASE("undo is there only while something can be undone")
{
    Commands commands;
    commands.desk.open("/b", { "1.jpg", "2.jpg" });
    auto const undo = commands["Papierkorb rückgängig"];
    CHECK_FALSE(undo.isEnabled());
    commands.model.toggle(0);
    commands.run("In den Papierkorb legen");
    CHECK(commands.desk.names() == Names { "2.jpg" });
    CHECK(undo.isEnabled());
    commands.run("Papierkorb rückgängig");
    CHECK(commands.desk.names() == Names { "1.jpg", "2.jpg" });
    CHECK_FALSE(undo.isEnabled());
}

TEST_CASE("there is a way up as long as the root is not the top of the file system")
{
    Commands commands;
    auto const up = commands["Übergeordneter Ordner"];
    CHECK_FALSE(up.isEnabled());
    commands.desk.open("/r/a", {});
    CHECK(up.isEnabled());
    up.run();
    CHECK(*commands.model.rootFolder == FileUrl("/r"));
    CHECK(*commands.model.folder == FileUrl("/r/a"));
    up.run();
    CHECK(*commands.model.rootFolder == FileUrl("/"));
    CHECK_FALSE(up.isEnabled());
}

TEST_CASE("the command of the slideshow starts it, and ends it while it runs")
{
    Commands commands;
    commands.desk.open("/b", { "1.jpg", "2.jpg" });
    commands.run("Diashow starten");
    CHECK(*commands.model.isSlideshow);
    CHECK(commands["Diashow beenden"].key == "Ctrl+Shift+D");
    commands.run("Diashow beenden");
    CHECK_FALSE(*commands.model.isSlideshow);
    CHECK(commands.model.viewerIndex->has_value());
    CHECK(commands["Diashow starten"].canRun());
}

TEST_CASE("a slide may stay for 2, 3, 4, 6, 10 or 20 seconds")
{
    Commands commands;
    Names titles;
    for (auto const& choice : commands["Diashow-Intervall"].entries()) {
        CHECK(choice.kind == AppCommand::Kind::choice);
        titles.push_back(choice.title);
    }
    CHECK(titles
        == Names {
            "2 Sekunden", "3 Sekunden", "4 Sekunden", "6 Sekunden", "10 Sekunden", "20 Sekunden" });
    CHECK(commands.checked() == Names { "4 Sekunden" });
    Commands::in(commands["Diashow-Intervall"].entries(), "10 Sekunden").run();
    CHECK(*commands.model.slideshowInterval == 10.0);
    CHECK(commands.checked() == Names { "10 Sekunden" });
}

TEST_CASE("a stored interval that is not offered checks none")
{
    Commands commands;
    commands.model.setSlideshowInterval(4.5);
    CHECK(commands.checked().empty());
}

TEST_CASE("toggles show and turn what they stand for")
{
    Commands commands;
    auto const turns = [&](char const* title, auto const& field) {
        auto const toggle = commands[title];
        bool const before = field;
        CHECK(toggle.isOn() == before);
        toggle.run();
        CHECK(field != before);
        CHECK(toggle.isOn() == !before);
    };
    turns("Diashow zufällig", commands.model.slideshowShuffle);
    turns("Infos einblenden  (I)", commands.model.showInfo);
    turns("Dateinamen anzeigen", commands.model.showFilenames);
    turns("Auflösung anzeigen", commands.model.showResolution);
    turns("Vollbild", commands.windows.fillsScreen);
}

TEST_CASE("every command calls its operation")
{
    Commands commands;
    auto& desk = commands.desk;
    desk.open("/b", { "1.jpg", "2.jpg", "3.jpg" });
    commands.run("Alle auswählen  (⌘A)");
    CHECK(desk.model().selection->size() == 3);
    commands.run("Auswahl aufheben  (⇧⌘A)");
    CHECK(desk.model().selection->empty());
    desk.model().toggle(1);
    commands.run("Im Finder zeigen");
    CHECK(desk.workspace.revealed == std::vector<std::vector<FileUrl>> { { FileUrl("/b/2.jpg") } });
    commands.run("Mit Standard-App öffnen");
    CHECK(desk.workspace.opened == std::vector { FileUrl("/b/2.jpg") });
    commands.run("In Zwischenablage kopieren");
    CHECK(desk.clipboard.contents == std::vector { FileUrl("/b/2.jpg") });
    commands.run("Auswahl umkehren");
    CHECK(desk.model().selection->size() == 2);
    commands.run("Kopieren nach …");
    commands.run("Verschieben nach …");
    REQUIRE(desk.panels.requests.size() == 2);
    CHECK(desk.panels.requests[0].message == "2 Fotos kopieren nach …");
    CHECK(desk.panels.requests[1].message == "2 Fotos verschieben nach …");
    commands.run("Ordner öffnen …");
    CHECK(desk.panels.requests.size() == 3);
    commands.run("Kontaktabzug (PDF) …");
    CHECK(desk.model().showContactSheetDialog);
}

TEST_CASE("reloading scans anew, refreshing only lists and counts the folders")
{
    Commands commands;
    commands.desk.open("/b", { "1.jpg" });
    auto& model = commands.model;
    auto const generation = model.scanGeneration();
    auto const tree = *model.treeVersion;
    auto const counts = *model.countsVersion;
    commands.run("Ordnerliste aktualisieren");
    CHECK(model.scanGeneration() == generation);
    CHECK(*model.treeVersion == tree + 1);
    CHECK(*model.countsVersion == counts + 1);
    commands.run("Neu laden");
    CHECK(model.scanGeneration() == generation + 1);
    CHECK(*model.treeVersion == tree + 2);
    CHECK(*model.countsVersion == counts + 2);
}

TEST_CASE("what windows do is asked of the windows")
{
    Commands commands;
    commands.run("Schließen");
    commands.run("Beenden");
    commands.run("Pixelhain-Hilfe");
    commands.run("Über Pixelhain");
    CHECK(commands.windows.asked == Names { "close", "quit", "help", "about" });
    commands.run("Seitenleiste ausblenden");
    CHECK_FALSE(commands.windows.hasSidebar);
    commands.run("Seitenleiste einblenden");
    CHECK(commands.windows.hasSidebar);
}

TEST_CASE("text can be cut, copied and pasted only where it is edited")
{
    Commands commands;
    for (char const* title : { "Ausschneiden", "Kopieren", "Einfügen", "Alles auswählen" })
        CHECK_FALSE(commands[title].canRun());
    commands.windows.isEditing = true;
    CHECK_FALSE(commands["Ausschneiden"].canRun());
    for (char const* title : { "Kopieren", "Einfügen", "Alles auswählen" })
        commands.run(title);
    CHECK(commands.windows.edits
        == std::vector { TextEdit::copy, TextEdit::paste, TextEdit::selectAll });
}

TEST_CASE("where no text is edited photos are copied and selected, as by the same keys")
{
    Commands commands;
    commands.desk.open("/b", { "1.jpg", "2.jpg" });
    commands.run("Alles auswählen");
    CHECK(commands.model.selection->size() == 2);
    commands.run("Kopieren");
    CHECK(commands.desk.clipboard.contents
        == std::vector { FileUrl("/b/1.jpg"), FileUrl("/b/2.jpg") });
    CHECK(commands.windows.edits.empty());
    for (char const* title : { "Ausschneiden", "Einfügen" })
        CHECK_FALSE(commands[title].canRun());
    commands.windows.isEditing = true;
    commands.windows.unavailable = TextEdit::copy;
    CHECK_FALSE(commands["Kopieren"].canRun());
}

TEST_CASE("the folders opened last are offered with what tells them apart, and can be forgotten")
{
    Commands commands;
    auto& desk = commands.desk;
    CHECK_FALSE(commands["Zuletzt geöffnet"].isEnabled());
    desk.open("/home/eva/2023/Urlaub", { "1.jpg" });
    desk.open("/home/eva/2024/Urlaub", { "2.jpg" });
    desk.open("/media/\xE4", {});
    CHECK(commands["Zuletzt geöffnet"].isEnabled());
    auto const entries = commands["Zuletzt geöffnet"].entries();
    Names titles;
    Names hints;
    for (auto const& entry : entries) {
        titles.push_back(entry.title);
        hints.push_back(entry.hint);
    }
    CHECK(titles == Names { "\uFFFD", "2024/Urlaub", "2023/Urlaub", "", "Liste leeren" });
    CHECK(hints == Names { "/media/\uFFFD", "~/2024/Urlaub", "~/2023/Urlaub", "", "" });
    entries[2].run();
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg" });
    entries[0].run();
    desk.settle();
    CHECK(*desk.model().folder == FileUrl("/media/\xE4"));
    Commands::in(commands["Zuletzt geöffnet"].entries(), "Liste leeren").run();
    CHECK(desk.model().recentFolders->empty());
    CHECK_FALSE(commands["Zuletzt geöffnet"].isEnabled());
}
