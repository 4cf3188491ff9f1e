#pragma once
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

class BrowserModel;

/// One command of the menu bar. A command without a title is a divider.
struct AppCommand {
    std::string title;
    /// The toolkit's portable names ("Ctrl+Shift+M"), the command's own key first, then the habits
    /// of this desktop.
    std::vector<std::string> keys;
    std::function<void()> run;
    std::function<bool()> isEnabled; ///< always if null
};

struct AppMenu {
    std::string title;
    std::vector<AppCommand> commands;
};

/// The commands of the menu bar. Each only calls an operation of the model; none holds state of its
/// own. Keys that titles show in parentheses are the gallery's, not the menu's.
class AppCommands {
public:
    /// `openHelp` opens the help window or brings it to the front.
    explicit AppCommands(BrowserModel& model, std::function<void()> openHelp = nullptr)
        : model_(model)
        , openHelp_(std::move(openHelp))
    {
    }

    [[nodiscard]] AppMenu file() const;
    [[nodiscard]] AppMenu edit() const;
    [[nodiscard]] AppMenu view() const;
    [[nodiscard]] AppMenu photos() const;
    [[nodiscard]] AppMenu help() const;

private:
    BrowserModel& model_;
    std::function<void()> openHelp_;
};

} // namespace pixelhain
