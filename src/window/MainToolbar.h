#pragma once
#include "window/MenuEntry.h"
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

class BrowserModel;
class ShareMenu;

/// The items of the toolbar: what each is called, what it does, and the menus behind them. Lengths
/// are points. No item is ever disabled; the model knows what to do without photos.
class MainToolbar {
public:
    enum class Item : std::uint8_t { thumbnailSize, view, slideshow, trash, actions, share };

    /// The primary group from left to right.
    static constexpr std::array order { Item::thumbnailSize, Item::view, Item::slideshow,
        Item::trash, Item::actions, Item::share };

    static constexpr std::string_view name = "Symbolleiste"; ///< said by screen readers
    static constexpr std::string_view sidebarSymbol = "sidebar.left";
    static constexpr std::string_view folderTitle = "Ordner öffnen";
    static constexpr std::string_view folderSymbol = "folder";
    static constexpr std::string_view folderTip = "Ordner öffnen (⌘O)";
    static constexpr std::string_view searchPrompt = "Dateiname filtern";
    static constexpr std::string_view searchSymbol = "magnifyingglass";
    static constexpr std::string_view clearTitle = "Filter löschen";
    static constexpr std::string_view clearSymbol = "xmark.circle.fill";
    static constexpr std::string_view moreTitle = "Mehr";
    static constexpr std::string_view moreSymbol = "chevron.right.2";

    static constexpr double sizeSpacing = 4; ///< between the slider and its symbols
    static constexpr double sliderWidth = 110;
    static constexpr std::string_view smallerSymbol = "square.grid.3x3"; ///< caption, secondary
    static constexpr std::string_view largerSymbol = "square.grid.2x2"; ///< secondary

    /// `share` may be null: then there is nothing to share with.
    explicit MainToolbar(BrowserModel& model, ShareMenu* share = nullptr)
        : model_(model)
        , share_(share)
    {
    }

    /// Not while a photo is open in the viewer.
    [[nodiscard]] bool isShown() const;

    /// What the button for the folders' column does to it, as the menu bar says it too.
    [[nodiscard]] static std::string_view sidebarTitle(bool isShown);
    [[nodiscard]] static std::string sidebarTip(bool isShown);

    /// What stands beside the item's symbol; said by screen readers where nothing stands there.
    [[nodiscard]] static std::string_view title(Item item);
    [[nodiscard]] static std::string_view symbol(Item item); ///< none of the size's
    [[nodiscard]] static bool hasMenu(Item item);
    [[nodiscard]] std::string tip(Item item) const;

    /// The menu of an item, to be asked for when it opens; empty if it has none.
    [[nodiscard]] std::vector<MenuEntry> menu(Item item) const;

    /// What a click on an item without a menu does.
    void perform(Item item);
    void chooseFolder();

    [[nodiscard]] static double minimumSize();
    [[nodiscard]] static double maximumSize();
    [[nodiscard]] double thumbSize() const;
    void setThumbSize(double points);

    [[nodiscard]] std::string const& searchText() const;
    void setSearchText(std::string text);
    void expectSearch(); ///< the user is about to type

    /// The items from `first` of `order` on, as a menu for what has no room.
    [[nodiscard]] std::vector<MenuEntry> overflow(std::size_t first) const;

private:
    [[nodiscard]] std::vector<MenuEntry> viewMenu() const;
    [[nodiscard]] std::vector<MenuEntry> actionsMenu() const;
    [[nodiscard]] std::vector<MenuEntry> shareMenu() const;

    BrowserModel& model_;
    ShareMenu* share_;
};

} // namespace pixelhain
