#include "window/MainToolbar.h"
#include "model/BrowserModel.h"
#include "model/Settings.h"
#include "window/ShareMenu.h"
#include <utility>

namespace pixelhain {

namespace {

std::string trashTip(std::size_t marked)
{
    constexpr std::string_view keys = "in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)";
    if (marked < 2)
        return "In den Papierkorb (⌘⌫, rückgängig mit ⌘Z)";
    return std::to_string(marked) + " ausgewählte Fotos " + std::string(keys);
}

} // namespace

bool MainToolbar::isShown() const
{
    return !model_.viewerIndex->has_value();
}

std::string_view MainToolbar::sidebarTitle(bool isShown)
{
    return isShown ? "Seitenleiste ausblenden" : "Seitenleiste einblenden";
}

std::string MainToolbar::sidebarTip(bool isShown)
{
    return std::string(sidebarTitle(isShown)) + " (⌃⌘S)";
}

std::string_view MainToolbar::title(Item item)
{
    switch (item) {
    case Item::thumbnailSize:
        return "Vorschaugröße";
    case Item::view:
        return "Ansicht";
    case Item::slideshow:
        return "Diashow";
    case Item::trash:
        return "Papierkorb";
    case Item::actions:
        return "Aktionen";
    case Item::share:
        break;
    }
    return "Teilen";
}

std::string_view MainToolbar::symbol(Item item)
{
    switch (item) {
    case Item::thumbnailSize:
        return {};
    case Item::view:
        return "arrow.up.arrow.down";
    case Item::slideshow:
        return "play.rectangle";
    case Item::trash:
        return "trash";
    case Item::actions:
        return "ellipsis.circle";
    case Item::share:
        break;
    }
    return "square.and.arrow.up";
}

bool MainToolbar::hasMenu(Item item)
{
    return item == Item::view || item == Item::actions || item == Item::share;
}

std::string MainToolbar::tip(Item item) const
{
    auto const marked = model_.selection->size();
    switch (item) {
    case Item::thumbnailSize:
        return "Vorschaugröße (+ / −)";
    case Item::view:
        return "Sortierung & Ansicht";
    case Item::slideshow:
        return marked > 1 ? "Diashow der Auswahl (⇧⌘D)" : "Diashow aller Fotos (⇧⌘D)";
    case Item::trash:
        return trashTip(marked);
    case Item::actions:
        return "Aktionen für die Auswahl";
    case Item::share:
        break;
    }
    return "Auswahl teilen";
}

std::vector<MenuEntry> MainToolbar::menu(Item item) const
{
    switch (item) {
    case Item::view:
        return viewMenu();
    case Item::actions:
        return actionsMenu();
    case Item::share:
        return shareMenu();
    default:
        return {};
    }
}

std::vector<MenuEntry> MainToolbar::viewMenu() const
{
    auto& model = model_;
    auto const sort = [&model](std::string title, SortKey key) {
        return MenuEntry::choice(
            std::move(title), *model.sortKey == key, [&model, key] { model.setSortKey(key); });
    };
    // What is shown is what a click turns round, whatever has become of it meanwhile.
    auto const toggle = [&model](std::string title, bool isOn, auto set) {
        return MenuEntry::toggle(
            std::move(title), isOn, [&model, isOn, set] { (model.*set)(!isOn); });
    };
    return {
        MenuEntry::heading("Sortieren nach"),
        sort("Name", SortKey::name),
        sort("Änderungsdatum", SortKey::date),
        sort("Dateigröße", SortKey::size),
        toggle("Aufsteigend", model.ascending, &BrowserModel::setAscending),
        MenuEntry {},
        toggle("Unterordner einbeziehen", model.includeSubfolders,
            &BrowserModel::setIncludeSubfolders),
        toggle("Dateinamen anzeigen", model.showFilenames, &BrowserModel::setShowFilenames),
        toggle("Auflösung anzeigen", model.showResolution, &BrowserModel::setShowResolution),
    };
}

std::vector<MenuEntry> MainToolbar::actionsMenu() const
{
    auto& model = model_;
    auto const entry = [&model](std::string title, void (BrowserModel::*operation)()) {
        return MenuEntry::action(std::move(title), [&model, operation] { (model.*operation)(); });
    };
    auto const transfer = [&model](std::string title, Transfer way) {
        return MenuEntry::action(std::move(title), [&model, way] { model.moveOrCopyTargets(way); });
    };
    return {
        entry("In den Papierkorb legen  (⌘⌫)", &BrowserModel::trashTargets),
        transfer("Verschieben nach …", Transfer::move),
        transfer("Kopieren nach …", Transfer::copy),
        entry("In Zwischenablage kopieren", &BrowserModel::copyToClipboard),
        MenuEntry {},
        MenuEntry::action(
            "Kontaktabzug (PDF) …", [&model] { model.setShowContactSheetDialog(true); }),
        MenuEntry {},
        entry("Im Finder zeigen", &BrowserModel::revealInFinder),
        entry("Mit Standard-App öffnen", &BrowserModel::openWithDefaultApp),
        MenuEntry {},
        entry("Alle auswählen", &BrowserModel::selectAll),
        entry("Auswahl aufheben", &BrowserModel::selectNone),
        entry("Auswahl umkehren", &BrowserModel::invertSelection),
    };
}

std::vector<MenuEntry> MainToolbar::shareMenu() const
{
    if (!share_)
        return {};
    share_->prepare();
    return share_->entries(model_.actionTargets());
}

void MainToolbar::perform(Item item)
{
    if (item == Item::slideshow)
        model_.startSlideshow();
    if (item == Item::trash)
        model_.trashTargets();
}

void MainToolbar::chooseFolder()
{
    model_.chooseFolder();
}

double MainToolbar::minimumSize()
{
    return settings::minThumbSize;
}

double MainToolbar::maximumSize()
{
    return settings::maxThumbSize;
}

double MainToolbar::thumbSize() const
{
    return model_.thumbSize;
}

void MainToolbar::setThumbSize(double points)
{
    model_.setThumbSize(points);
}

std::string const& MainToolbar::searchText() const
{
    return model_.searchText;
}

void MainToolbar::setSearchText(std::string text)
{
    model_.setSearchText(std::move(text));
}

void MainToolbar::expectSearch()
{
    model_.expectSearch();
}

std::vector<MenuEntry> MainToolbar::overflow(std::size_t first) const
{
    std::vector<MenuEntry> entries;
    for (auto at = first; at < order.size(); ++at) {
        auto const item = order[at];
        std::string const text(title(item));
        if (hasMenu(item))
            entries.push_back(MenuEntry::submenu(text, [*this, item] { return menu(item); }));
        else if (item != Item::thumbnailSize)
            entries.push_back(
                MenuEntry::action(text, [bar = *this, item]() mutable { bar.perform(item); }));
    }
    return entries;
}

} // namespace pixelhain
