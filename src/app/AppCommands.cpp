#include "app/AppCommands.h"
#include "model/BrowserModel.h"

namespace pixelhain {

AppMenu AppCommands::file() const
{
    auto& model = model_;
    return { "Datei",
        {
            { "Ordner öffnen …", { "Ctrl+O" }, [&model] { model.chooseFolder(); }, nullptr },
            { "Neu laden", { "Ctrl+R", "F5" }, [&model] { model.reload(); }, nullptr },
            { "Ordnerliste aktualisieren", { "Ctrl+Alt+R" }, [&model] { model.refreshTree(); },
                nullptr },
        } };
}

AppMenu AppCommands::edit() const
{
    auto& model = model_;
    return { "Bearbeiten",
        {
            { "Papierkorb rückgängig", { "Ctrl+Z" }, [&model] { model.undoTrash(); },
                [&model]() -> bool { return model.canUndoTrash; } },
        } };
}

AppMenu AppCommands::view() const
{
    auto& model = model_;
    return { "Ansicht",
        {
            { "Übergeordneter Ordner", { "Ctrl+Up", "Alt+Up" },
                [&model] { model.showParentFolder(); }, [&model] { return model.canGoUp(); } },
        } };
}

AppMenu AppCommands::photos() const
{
    auto& model = model_;
    auto const transfer
        = [&model](Transfer way) { return [&model, way] { model.moveOrCopyTargets(way); }; };
    return { "Fotos",
        {
            { "In den Papierkorb legen", { "Ctrl+Backspace", "Del" },
                [&model] { model.trashTargets(); }, nullptr },
            { "Verschieben nach …", { "Ctrl+Shift+M" }, transfer(Transfer::move), nullptr },
            { "Kopieren nach …", { "Ctrl+Shift+K" }, transfer(Transfer::copy), nullptr },
            { "In Zwischenablage kopieren", { "Ctrl+C" }, [&model] { model.copyToClipboard(); },
                nullptr },
            { "Kontaktabzug (PDF) …", { "Ctrl+P" },
                [&model] { model.setShowContactSheetDialog(true); },
                [&model] { return !model.items->empty(); } },
            {},
            { "Im Finder zeigen", { "Ctrl+Shift+R" }, [&model] { model.revealInFinder(); },
                nullptr },
            { "Mit Standard-App öffnen", { "Ctrl+Down" }, [&model] { model.openWithDefaultApp(); },
                nullptr },
            {},
            { "Alle auswählen  (⌘A)", {}, [&model] { model.selectAll(); }, nullptr },
            { "Auswahl aufheben  (⇧⌘A)", {}, [&model] { model.selectNone(); }, nullptr },
            { "Auswahl umkehren", {}, [&model] { model.invertSelection(); }, nullptr },
        } };
}

AppMenu AppCommands::help() const
{
    return { "Hilfe",
        {
            { "Pixelhain-Hilfe", { "Ctrl+?", "F1" }, openHelp_, nullptr },
        } };
}

} // namespace pixelhain
