#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// One entry of a menu that is made when it opens.
struct MenuEntry {
    enum class Kind : std::uint8_t {
        action,
        divider,
        submenu,
        heading, ///< says what the choices below it are for
        choice, ///< one of those that follow each other; exactly one is checked
        toggle ///< checked or not
    };

    Kind kind = Kind::divider;
    std::string title {};
    std::function<void()> run {}; ///< of an action, a choice or a toggle
    std::function<std::vector<MenuEntry>()> entries {}; ///< of a submenu, asked when it opens
    bool isChecked = false; ///< of a choice or a toggle

    static MenuEntry action(std::string title, std::function<void()> run)
    {
        return { Kind::action, std::move(title), std::move(run) };
    }
    static MenuEntry submenu(std::string title, std::function<std::vector<MenuEntry>()> entries)
    {
        return { Kind::submenu, std::move(title), nullptr, std::move(entries) };
    }
    static MenuEntry heading(std::string title) { return { Kind::heading, std::move(title) }; }
    static MenuEntry choice(std::string title, bool isChecked, std::function<void()> run)
    {
        return { Kind::choice, std::move(title), std::move(run), nullptr, isChecked };
    }
    static MenuEntry toggle(std::string title, bool isChecked, std::function<void()> run)
    {
        return { Kind::toggle, std::move(title), std::move(run), nullptr, isChecked };
    }
};

} // namespace pixelhain
