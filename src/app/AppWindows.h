#pragma once
#include <cstdint>

namespace pixelhain {

/// What can be done with the text that is being edited.
enum class TextEdit : std::uint8_t { cut, copy, paste, selectAll };

/// What the commands of the menu bar ask of the windows. Main thread only.
class AppWindows {
public:
    virtual ~AppWindows() = default;

    /// Each opens its window or brings it to the front.
    virtual void openHelp() = 0;
    virtual void openAbout() = 0;

    /// Closes the main window, or all windows.
    virtual void close() = 0;
    virtual void quit() = 0;

    [[nodiscard]] virtual bool showsSidebar() const = 0;
    virtual void toggleSidebar() = 0;
    [[nodiscard]] virtual bool isFullScreen() const = 0;
    virtual void toggleFullScreen() = 0;

    /// Whether what is typed goes into a text.
    [[nodiscard]] virtual bool isEditingText() const = 0;
    /// Whether a text is being edited that this can be done with now.
    [[nodiscard]] virtual bool canEdit(TextEdit edit) const = 0;
    virtual void edit(TextEdit edit) = 0;
};

} // namespace pixelhain
