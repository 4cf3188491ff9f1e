#pragma once
#include "app/AppCommand.h"
#include "app/AppWindows.h"
#include "base/FileUrl.h"
#include <array>
#include <utility>

namespace pixelhain {

class BrowserModel;

/// The commands of the menu bar: the one table of their titles, keys and rules. Each only calls an
/// operation of the model or of the windows; none holds state of its own. Keys that titles show in
/// parentheses are the gallery's, not the menu's.
class AppCommands {
public:
    /// Seconds that a slide may stay.
    static constexpr std::array slideshowIntervals { 2.0, 3.0, 4.0, 6.0, 10.0, 20.0 };

    /// Both outlive the commands. `home` is shown as "~" in the list of folders.
    AppCommands(BrowserModel& model, AppWindows& windows, FileUrl home = {})
        : model_(model)
        , windows_(windows)
        , home_(std::move(home))
    {
    }

    /// All of them, in the order of the bar.
    [[nodiscard]] std::vector<AppMenu> menus() const;

    [[nodiscard]] AppMenu file() const;
    [[nodiscard]] AppMenu edit() const;
    [[nodiscard]] AppMenu view() const;
    [[nodiscard]] AppMenu photos() const;
    [[nodiscard]] AppMenu help() const;

private:
    [[nodiscard]] AppCommand recentFolders() const;
    [[nodiscard]] AppCommand textCommand(std::string title, std::string key, TextEdit edit) const;
    [[nodiscard]] AppCommand textOrPhotos(
        AppCommand command, void (BrowserModel::*operation)()) const;
    [[nodiscard]] AppCommand slideshow() const;
    [[nodiscard]] AppCommand slideshowInterval() const;
    [[nodiscard]] std::vector<AppCommand> fileCommands() const;
    [[nodiscard]] std::vector<AppCommand> selectionCommands() const;
    [[nodiscard]] std::vector<AppCommand> captionCommands() const;

    BrowserModel& model_;
    AppWindows& windows_;
    FileUrl home_;
};

} // namespace pixelhain
