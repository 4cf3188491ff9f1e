#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// One line of a menu.
struct AppCommand {
    enum class Kind : std::uint8_t {
        divider,
        button,
        toggle, ///< with a check mark while it is on
        choice, ///< of a picker; the chosen one is checked
        submenu, ///< of buttons; of choices if it is a picker
    };

    Kind kind = Kind::divider;
    std::string title {};
    /// The command's own key in the toolkit's portable spelling ("Ctrl+Shift+M"); may be empty.
    std::string key {};
    /// What people press for it on this desktop besides.
    std::vector<std::string> habits {};
    std::function<void()> run {};
    std::function<bool()> isEnabled {}; ///< always if null
    std::function<bool()> isOn {}; ///< of a toggle or choice
    std::function<std::string()> titleNow {}; ///< of a title that changes, else null
    std::function<std::vector<AppCommand>()> entries {}; ///< of a submenu, as they are now
    /// The key is shown only: the field with the text that is edited acts on it by itself.
    bool isKeyOfText = false;
    std::string hint {}; ///< what the title leaves out

    static AppCommand button(std::string title, std::string key, std::function<void()> run)
    {
        return { .kind = Kind::button,
            .title = std::move(title),
            .key = std::move(key),
            .run = std::move(run) };
    }
    static AppCommand toggle(
        std::string title, std::function<bool()> isOn, std::function<void()> run)
    {
        return { .kind = Kind::toggle,
            .title = std::move(title),
            .run = std::move(run),
            .isOn = std::move(isOn) };
    }
    static AppCommand submenu(std::string title, std::function<std::vector<AppCommand>()> entries)
    {
        return { .kind = Kind::submenu, .title = std::move(title), .entries = std::move(entries) };
    }

    AppCommand with(std::vector<std::string> keys) &&
    {
        habits = std::move(keys);
        return std::move(*this);
    }
    AppCommand onlyWhile(std::function<bool()> condition) &&
    {
        isEnabled = std::move(condition);
        return std::move(*this);
    }
    AppCommand titled(std::function<std::string()> now) &&
    {
        titleNow = std::move(now);
        return std::move(*this);
    }

    [[nodiscard]] bool canRun() const { return run && (!isEnabled || isEnabled()); }
    [[nodiscard]] std::string shownTitle() const { return titleNow ? titleNow() : title; }
};

struct AppMenu {
    std::string title;
    std::vector<AppCommand> commands;
};

} // namespace pixelhain
