#include "app/AppCommands.h"
#include "model/BrowserModel.h"
#include "model/RecentFolders.h"
#include "window/MainToolbar.h"
#include <iterator>
#include <utility>

namespace pixelhain {

namespace {

using Commands = std::vector<AppCommand>;

AppCommand divider()
{
    return {};
}

void append(Commands& commands, Commands more)
{
    commands.push_back(divider());
    commands.insert(
        commands.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

std::vector<AppMenu> AppCommands::menus() const
{
    return { file(), edit(), view(), photos(), help() };
}

AppMenu AppCommands::file() const
{
    auto& model = model_;
    auto& windows = windows_;
    return { "Datei",
        {
            AppCommand::button("Ordner öffnen …", "Ctrl+O", [&model] { model.chooseFolder(); }),
            recentFolders(),
            AppCommand::button("Neu laden", "Ctrl+R", [&model] { model.reload(); }).with({ "F5" }),
            AppCommand::button(
                "Ordnerliste aktualisieren", "Ctrl+Alt+R", [&model] { model.refreshTree(); }),
            divider(),
            AppCommand::button("Schließen", "Ctrl+W", [&windows] { windows.close(); }),
            AppCommand::button("Beenden", "Ctrl+Q", [&windows] { windows.quit(); }),
        } };
}

AppCommand AppCommands::recentFolders() const
{
    auto const entries = [&model = model_, home = home_] {
        auto const& folders = model.recentFolders.get();
        auto const titles = recents::titles(folders, home);
        Commands commands;
        for (std::size_t i = 0; i < folders.size(); ++i) {
            commands.push_back(AppCommand::button(
                titles[i], "", [&model, folder = folders[i]] { model.openRecent(folder); }));
            commands.back().hint = recents::shownPath(folders[i], home);
        }
        append(commands,
            { AppCommand::button("Liste leeren", "", [&model] { model.clearRecentFolders(); }) });
        return commands;
    };
    return AppCommand::submenu("Zuletzt geöffnet", entries).onlyWhile([&model = model_] {
        return !model.recentFolders->empty();
    });
}

AppMenu AppCommands::edit() const
{
    auto& model = model_;
    return { "Bearbeiten",
        {
            AppCommand::button("Papierkorb rückgängig", "Ctrl+Z", [&model] { model.undoTrash(); })
                .onlyWhile([&model]() -> bool { return model.canUndoTrash; }),
            divider(),
            textCommand("Ausschneiden", "Ctrl+X", TextEdit::cut),
            textOrPhotos(
                textCommand("Kopieren", "Ctrl+C", TextEdit::copy), &BrowserModel::copyToClipboard),
            textCommand("Einfügen", "Ctrl+V", TextEdit::paste),
            textOrPhotos(textCommand("Alles auswählen", "Ctrl+A", TextEdit::selectAll),
                &BrowserModel::selectAll),
        } };
}

AppCommand AppCommands::textCommand(std::string title, std::string key, TextEdit edit) const
{
    auto& windows = windows_;
    auto command = AppCommand::button(
        std::move(title), std::move(key), [&windows, edit] { windows.edit(edit); });
    command.isKeyOfText = true;
    command.isEnabled = [&windows, edit] { return windows.canEdit(edit); };
    return command;
}

// As its key: without a text to edit the command is for the photos.
AppCommand AppCommands::textOrPhotos(AppCommand command, void (BrowserModel::*operation)()) const
{
    auto& model = model_;
    auto& windows = windows_;
    command.run = [&model, &windows, operation, edit = std::move(command.run)] {
        windows.isEditingText() ? edit() : (model.*operation)();
    };
    command.isEnabled = [&model, &windows, canEdit = std::move(command.isEnabled)] {
        return windows.isEditingText() ? canEdit() : !model.items->empty();
    };
    return command;
}

AppMenu AppCommands::view() const
{
    auto& model = model_;
    auto& windows = windows_;
    auto const sidebarTitle
        = [&windows] { return std::string(MainToolbar::sidebarTitle(windows.showsSidebar())); };
    return { "Ansicht",
        {
            AppCommand::button(
                sidebarTitle(), "Meta+Ctrl+S", [&windows] { windows.toggleSidebar(); })
                .with({ "F9" })
                .titled(sidebarTitle),
            AppCommand::button(
                "Übergeordneter Ordner", "Ctrl+Up", [&model] { model.showParentFolder(); })
                .with({ "Alt+Up" })
                .onlyWhile([&model] { return model.canGoUp(); }),
            divider(),
            AppCommand::toggle(
                "Vollbild", [&windows] { return windows.isFullScreen(); },
                [&windows] { windows.toggleFullScreen(); })
                .with({ "F11" }),
        } };
}

AppMenu AppCommands::photos() const
{
    auto& model = model_;
    AppMenu menu { "Fotos",
        {
            slideshow(),
            AppCommand::toggle(
                "Diashow zufällig", [&model]() -> bool { return model.slideshowShuffle; },
                [&model] { model.setSlideshowShuffle(!model.slideshowShuffle); }),
            slideshowInterval(),
        } };
    append(menu.commands, fileCommands());
    append(menu.commands,
        {
            AppCommand::button(
                "Im Finder zeigen", "Ctrl+Shift+R", [&model] { model.revealInFinder(); }),
            AppCommand::button(
                "Mit Standard-App öffnen", "Ctrl+Down", [&model] { model.openWithDefaultApp(); }),
        });
    append(menu.commands, selectionCommands());
    append(menu.commands, captionCommands());
    return menu;
}

AppCommand AppCommands::slideshow() const
{
    auto& model = model_;
    auto const title
        = [&model] { return model.isSlideshow ? "Diashow beenden" : "Diashow starten"; };
    auto const startOrStop = [&model] {
        if (model.isSlideshow)
            model.stopSlideshow();
        else
            model.startSlideshow();
    };
    return AppCommand::button(title(), "Ctrl+Shift+D", startOrStop)
        .titled(title)
        .onlyWhile([&model] { return !model.items->empty(); });
}

AppCommand AppCommands::slideshowInterval() const
{
    return AppCommand::submenu("Diashow-Intervall", [&model = model_] {
        Commands choices;
        for (auto const seconds : slideshowIntervals)
            choices.push_back({ .kind = AppCommand::Kind::choice,
                .title = std::to_string(static_cast<int>(seconds)) + " Sekunden",
                .run = [&model, seconds] { model.setSlideshowInterval(seconds); },
                .isOn = [&model, seconds] { return model.slideshowInterval == seconds; } });
        return choices;
    });
}

std::vector<AppCommand> AppCommands::fileCommands() const
{
    auto& model = model_;
    auto const transfer
        = [&model](Transfer way) { return [&model, way] { model.moveOrCopyTargets(way); }; };
    return {
        AppCommand::button(
            "In den Papierkorb legen", "Ctrl+Backspace", [&model] { model.trashTargets(); })
            .with({ "Del" }),
        AppCommand::button("Verschieben nach …", "Ctrl+Shift+M", transfer(Transfer::move)),
        AppCommand::button("Kopieren nach …", "Ctrl+Shift+K", transfer(Transfer::copy)),
        AppCommand::button("In Zwischenablage kopieren", "", [&model] { model.copyToClipboard(); })
            .with({ "Ctrl+C" }),
        AppCommand::button(
            "Kontaktabzug (PDF) …", "Ctrl+P", [&model] { model.setShowContactSheetDialog(true); })
            .onlyWhile([&model] { return !model.items->empty(); }),
    };
}

std::vector<AppCommand> AppCommands::selectionCommands() const
{
    auto& model = model_;
    return {
        AppCommand::button("Alle auswählen  (⌘A)", "", [&model] { model.selectAll(); }),
        AppCommand::button("Auswahl aufheben  (⇧⌘A)", "", [&model] { model.selectNone(); }),
        AppCommand::button("Auswahl umkehren", "", [&model] { model.invertSelection(); }),
    };
}

std::vector<AppCommand> AppCommands::captionCommands() const
{
    auto& model = model_;
    return {
        AppCommand::toggle(
            "Infos einblenden  (I)", [&model]() -> bool { return model.showInfo; },
            [&model] { model.toggleInfo(); }),
        AppCommand::toggle(
            "Dateinamen anzeigen", [&model]() -> bool { return model.showFilenames; },
            [&model] { model.setShowFilenames(!model.showFilenames); }),
        AppCommand::toggle(
            "Auflösung anzeigen", [&model]() -> bool { return model.showResolution; },
            [&model] { model.setShowResolution(!model.showResolution); }),
    };
}

AppMenu AppCommands::help() const
{
    auto& windows = windows_;
    return { "Hilfe",
        {
            AppCommand::button("Pixelhain-Hilfe", "Ctrl+?", [&windows] { windows.openHelp(); })
                .with({ "F1" }),
            divider(),
            AppCommand::button("Über Pixelhain", "", [&windows] { windows.openAbout(); }),
        } };
}

} // namespace pixelhain
