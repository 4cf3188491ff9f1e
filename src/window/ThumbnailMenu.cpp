#include "window/ThumbnailMenu.h"
#include "model/BrowserModel.h"
#include "model/SelectionRules.h"
#include "ports/Workspace.h"
#include <algorithm>
#include <optional>

namespace pixelhain {

namespace {

// Where the photo is by now: a scan may have moved it while the menu was open.
std::optional<std::size_t> indexNow(
    std::vector<PhotoItem> const& items, std::size_t index, FileUrl const& photo)
{
    if (index < items.size() && items[index].url == photo)
        return index;
    auto const found = std::find_if(
        items.begin(), items.end(), [&](PhotoItem const& item) { return item.url == photo; });
    if (found == items.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - items.begin());
}

std::string trashTitle(std::size_t count)
{
    if (count < 2)
        return "In den Papierkorb";
    return std::to_string(count) + " Fotos in den Papierkorb";
}

} // namespace

std::vector<FileUrl> ThumbnailMenu::targets(std::size_t index) const
{
    auto const& model = services_.model;
    auto const& photo = model.items->at(index).url;
    if (!model.selection->contains(photo))
        return { photo };
    auto all = markedPhotos(model.selection, *model.items);
    UrlSet const visible(all.begin(), all.end());
    auto const firstHidden = static_cast<std::ptrdiff_t>(all.size());
    for (auto const& url : *model.selection)
        if (!visible.contains(url))
            all.push_back(url);
    std::sort(all.begin() + firstHidden, all.end());
    return all;
}

std::vector<MenuEntry> ThumbnailMenu::open(std::size_t index)
{
    auto& model = services_.model;
    if (index >= model.items->size())
        return {};
    auto const photo = (*model.items)[index].url;
    auto const photos = targets(index);
    auto const withIndex = [&model, index, photo](auto operation) {
        return [&model, index, photo, operation] {
            if (auto const now = indexNow(*model.items, index, photo))
                operation(model, *now);
        };
    };
    auto const showInViewer = [](BrowserModel& m, std::size_t now) { m.openViewer(now); };
    auto const toggle = [](BrowserModel& m, std::size_t now) { m.toggle(now); };
    auto& workspace = services_.workspace;
    bool const isSelected = model.selection->contains(photo);
    share_.prepare();
    return {
        MenuEntry::action("Öffnen", withIndex(showInViewer)),
        MenuEntry::action(isSelected ? "Auswahl entfernen" : "Auswählen", withIndex(toggle)),
        MenuEntry {},
        MenuEntry::action(trashTitle(photos.size()), [&model, photos] { model.trash(photos); }),
        MenuEntry::action("Im Finder zeigen", [&workspace, photos] { workspace.reveal(photos); }),
        MenuEntry::action(
            "Mit Standard-App öffnen", [&workspace, photo] { workspace.open(photo); }),
        MenuEntry::submenu("Teilen …", [share = share_, photos] { return share.entries(photos); }),
    };
}

} // namespace pixelhain
