#pragma once
#include "base/Geometry.h"
#include <optional>
#include <span>

namespace pixelhain {

class Preferences;

/// Where the main window stands and how large it is, in points; kept with the settings, under
/// "windowX", "windowY", "windowWidth", "windowHeight", "windowMaximized" and "sidebarWidth".
struct WindowPlacement {
    /// Of the frame's upper left corner; nothing where the desktop places windows by itself.
    std::optional<Point> position;
    /// Of the window without its frame, while it is not maximized.
    double width = 0;
    double height = 0;
    bool isMaximized = false;
    double sidebarWidth = 0;

    bool operator==(WindowPlacement const&) const = default;
};

/// As of the last time; values that are missing or make no sense are those of a first start.
[[nodiscard]] WindowPlacement readPlacement(Preferences const& preferences);
void writePlacement(Preferences& preferences, WindowPlacement const& placement);

/// What fits the areas that the screens leave to windows, the main screen's first: no larger than
/// its screen, and all of it in view. Where the window's place is on no screen any more the desktop
/// is to find one.
[[nodiscard]] WindowPlacement fitted(WindowPlacement placement, std::span<Rect const> screens);

} // namespace pixelhain
