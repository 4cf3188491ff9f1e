#include "app/AppCommands.h"
#include "support/Desk.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

Names titles(AppMenu const& menu)
{
    Names all;
    for (auto const& command : menu.commands)
        all.push_back(command.title);
    return all;
}

AppCommand command(AppMenu const& menu, std::string const& title)
{
    auto const found = std::find_if(menu.commands.begin(), menu.commands.end(),
        [&](AppCommand const& each) { return each.title == title; });
    REQUIRE(found != menu.commands.end());
    return *found;
}

} // namespace

TEST_CASE("the menus name their commands exactly and in order")
{
    Desk desk;
    AppCommands const commands(desk.model());
    CHECK(commands.file().title == "Datei");
    CHECK(titles(commands.file())
        == Names { "Ordner öffnen …", "Neu laden", "Ordnerliste aktualisieren" });
    CHECK(commands.view().title == "Ansicht");
    CHECK(titles(commands.view()) == Names { "Übergeordneter Ordner" });
    CHECK(commands.edit().title == "Bearbeiten");
    CHECK(titles(commands.edit()) == Names { "Papierkorb rückgängig" });
    CHECK(commands.photos().title == "Fotos");
    CHECK(titles(commands.photos())
        == Names { "In den Papierkorb legen", "Verschieben nach …", "Kopieren nach …",
            "In Zwischenablage kopieren", "Kontaktabzug (PDF) …", "", "Im Finder zeigen",
            "Mit Standard-App öffnen", "", "Alle auswählen  (⌘A)", "Auswahl aufheben  (⇧⌘A)",
            "Auswahl umkehren" });
    CHECK(commands.help().title == "Hilfe");
    CHECK(titles(commands.help()) == Names { "Pixelhain-Hilfe" });
}

TEST_CASE("commands keep their keys and take those of this desktop besides")
{
    Desk desk;
    AppCommands const commands(desk.model());
    auto const photos = commands.photos();
    CHECK(command(photos, "In den Papierkorb legen").keys == Names { "Ctrl+Backspace", "Del" });
    CHECK(command(photos, "Verschieben nach …").keys == Names { "Ctrl+Shift+M" });
    CHECK(command(photos, "Kopieren nach …").keys == Names { "Ctrl+Shift+K" });
    CHECK(command(photos, "In Zwischenablage kopieren").keys == Names { "Ctrl+C" });
    CHECK(command(photos, "Kontaktabzug (PDF) …").keys == Names { "Ctrl+P" });
    CHECK(command(photos, "Im Finder zeigen").keys == Names { "Ctrl+Shift+R" });
    CHECK(command(photos, "Mit Standard-App öffnen").keys == Names { "Ctrl+Down" });
    CHECK(command(photos, "Alle auswählen  (⌘A)").keys.empty());
    CHECK(command(commands.edit(), "Papierkorb rückgängig").keys == Names { "Ctrl+Z" });
    CHECK(command(commands.file(), "Neu laden").keys == Names { "Ctrl+R", "F5" });
    CHECK(command(commands.file(), "Ordnerliste aktualisieren").keys == Names { "Ctrl+Alt+R" });
    CHECK(command(commands.view(), "Übergeordneter Ordner").keys == Names { "Ctrl+Up", "Alt+Up" });
    CHECK(command(commands.help(), "Pixelhain-Hilfe").keys == Names { "Ctrl+?", "F1" });
}

TEST_CASE("undo is there only while something can be undone, most else always")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    AppCommands const commands(desk.model());
    auto const undo = command(commands.edit(), "Papierkorb rückgängig");
    CHECK_FALSE(undo.isEnabled());
    desk.model().toggle(0);
    command(commands.photos(), "In den Papierkorb legen").run();
    desk.settle();
    CHECK(desk.names() == Names { "2.jpg" });
    CHECK(undo.isEnabled());
    undo.run();
    desk.settle();
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
    CHECK_FALSE(undo.isEnabled());
    for (auto const& each : commands.photos().commands)
        CHECK((each.isEnabled == nullptr) == (each.title != "Kontaktabzug (PDF) …"));
}

TEST_CASE("a contact sheet can be asked for only while there are photos")
{
    Desk desk;
    AppCommands const commands(desk.model());
    auto const sheet = command(commands.photos(), "Kontaktabzug (PDF) …");
    CHECK_FALSE(sheet.isEnabled());
    desk.open("/b", { "1.jpg" });
    CHECK(sheet.isEnabled());
    sheet.run();
    CHECK(desk.model().showContactSheetDialog);
}

TEST_CASE("every command calls its operation")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg", "3.jpg" });
    AppCommands const commands(desk.model());
    auto const run = [&](std::string const& title) {
        command(commands.photos(), title).run();
        desk.settle();
    };
    run("Alle auswählen  (⌘A)");
    CHECK(desk.model().selection->size() == 3);
    run("Auswahl aufheben  (⇧⌘A)");
    CHECK(desk.model().selection->empty());
    desk.model().toggle(1);
    run("Im Finder zeigen");
    CHECK(desk.workspace.revealed == std::vector<std::vector<FileUrl>> { { FileUrl("/b/2.jpg") } });
    run("Mit Standard-App öffnen");
    CHECK(desk.workspace.opened == std::vector { FileUrl("/b/2.jpg") });
    run("In Zwischenablage kopieren");
    CHECK(desk.clipboard.contents == std::vector { FileUrl("/b/2.jpg") });
    run("Auswahl umkehren");
    CHECK(desk.model().selection->size() == 2);
    run("Kopieren nach …");
    run("Verschieben nach …");
    REQUIRE(desk.panels.requests.size() == 2);
    CHECK(desk.panels.requests[0].message == "2 Fotos kopieren nach …");
    CHECK(desk.panels.requests[1].message == "2 Fotos verschieben nach …");
    auto const generation = desk.model().scanGeneration();
    command(commands.file(), "Neu laden").run();
    CHECK(desk.model().scanGeneration() == generation + 1);
    command(commands.file(), "Ordner öffnen …").run();
    CHECK(desk.panels.requests.size() == 3);
}

TEST_CASE("there is a way up as long as the root is not the top of the file system")
{
    Desk desk;
    auto const up = command(AppCommands(desk.model()).view(), "Übergeordneter Ordner");
    CHECK_FALSE(up.isEnabled());
    desk.open("/r/a", {});
    CHECK(up.isEnabled());
    up.run();
    CHECK(*desk.model().rootFolder == FileUrl("/r"));
    CHECK(*desk.model().folder == FileUrl("/r/a"));
    up.run();
    CHECK_FALSE(up.isEnabled());
}

TEST_CASE("the command of the help menu opens the help window")
{
    Desk desk;
    int opened = 0;
    auto const help
        = command(AppCommands(desk.model(), [&] { ++opened; }).help(), "Pixelhain-Hilfe");
    CHECK(!help.isEnabled);
    help.run();
    CHECK(opened == 1);
}
