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

/// What the desktop puts around a window, in points; nothing while that is not known.
struct WindowFrame {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    bool operator==(WindowFrame const&) const = default;
};

/// What fits the areas that the screens leave to windows, the main screen's first: with its frame
/// no larger than its screen, and all of it in view. Where the window's place is on no screen any
/// more the desktop is to find one.
[[nodiscard]] WindowPlacement fitted(
    WindowPlacement placement, std::span<Rect const> screens, WindowFrame const& frame = {});

/// What to keep of a window that stands as `now` after it was put where `placed` says, because
/// `wanted` did not fit: what nobody has changed since is still wanted, on a larger screen.
[[nodiscard]] WindowPlacement kept(
    WindowPlacement const& wanted, WindowPlacement const& placed, WindowPlacement now);

} // namespace pixelhain
