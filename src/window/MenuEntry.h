#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// One entry of a menu that is made when it opens.
struct MenuEntry {
    enum class Kind : std::uint8_t { action, divider, submenu };

    Kind kind = Kind::divider;
    std::string title;
    std::function<void()> run; ///< of an action
    std::function<std::vector<MenuEntry>()> entries; ///< of a submenu, asked when it opens

    static MenuEntry action(std::string title, std::function<void()> run)
    {
        return { Kind::action, std::move(title), std::move(run), nullptr };
    }
    static MenuEntry submenu(std::string title, std::function<std::vector<MenuEntry>()> entries)
    {
        return { Kind::submenu, std::move(title), nullptr, std::move(entries) };
    }
};

} // namespace pixelhain
