#include "window/WindowPlacement.h"
#include "ports/Preferences.h"
#include "window/ContentView.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

// Larger than any desktop; beyond, a settings file was not written by this program.
constexpr double farthest = 1e6;

// What must be seen of a window's upper edge for it to be grasped.
constexpr double leastInView = 48;

std::optional<double> length(Preferences const& preferences, char const* key)
{
    auto const value = preferences.number(key);
    if (!value || !std::isfinite(*value) || std::abs(*value) > farthest)
        return std::nullopt;
    return std::round(*value);
}

double length(
    Preferences const& preferences, char const* key, double least, double most, double otherwise)
{
    auto const value = length(preferences, key);
    return value && *value >= least && *value <= most ? *value : otherwise;
}

double common(double start, double end, double otherStart, double otherEnd)
{
    return std::min(end, otherEnd) - std::max(start, otherStart);
}

// How much of the window's upper edge is seen on the screen; nothing if too little to grasp.
double edgeInView(Rect const& window, Rect const& screen)
{
    auto const width = common(window.x, window.right(), screen.x, screen.right());
    auto const height = common(window.y, window.y + leastInView, screen.y, screen.bottom());
    return width >= leastInView && height > 0 ? width * height : 0;
}

double within(double start, double length, double from, double room)
{
    return std::max(from, std::min(start, from + room - length));
}

} // namespace

WindowPlacement readPlacement(Preferences const& preferences)
{
    using View = ContentView;
    WindowPlacement placement;
    auto const x = length(preferences, "windowX");
    auto const y = length(preferences, "windowY");
    if (x && y)
        placement.position = Point { *x, *y };
    placement.width
        = length(preferences, "windowWidth", View::minimumWidth, farthest, View::defaultWidth);
    placement.height
        = length(preferences, "windowHeight", View::minimumHeight, farthest, View::defaultHeight);
    placement.isMaximized = preferences.boolean("windowMaximized").value_or(false);
    placement.sidebarWidth = length(preferences, "sidebarWidth", View::sidebarMinimumWidth,
        View::sidebarMaximumWidth, View::sidebarIdealWidth);
    return placement;
}

void writePlacement(Preferences& preferences, WindowPlacement const& placement)
{
    if (placement.position) {
        preferences.setNumber("windowX", placement.position->x);
        preferences.setNumber("windowY", placement.position->y);
    }
    preferences.setNumber("windowWidth", placement.width);
    preferences.setNumber("windowHeight", placement.height);
    preferences.setBoolean("windowMaximized", placement.isMaximized);
    preferences.setNumber("sidebarWidth", placement.sidebarWidth);
}

WindowPlacement fitted(
    WindowPlacement placement, std::span<Rect const> screens, WindowFrame const& frame)
{
    if (screens.empty())
        return placement;
    auto const frameWidth = frame.left + frame.right;
    auto const frameHeight = frame.top + frame.bottom;
    auto screen = screens.front();
    if (auto& at = placement.position) {
        Rect const window { at->x, at->y, placement.width + frameWidth,
            placement.height + frameHeight };
        auto const inView = [&](Rect const& candidate) { return edgeInView(window, candidate); };
        screen = *std::ranges::max_element(screens, {}, inView);
        if (inView(screen) == 0) {
            screen = screens.front();
            at.reset();
        }
    }
    placement.width = std::min(placement.width, screen.width - frameWidth);
    placement.height = std::min(placement.height, screen.height - frameHeight);
    if (auto& at = placement.position) {
        at->x = within(at->x, placement.width + frameWidth, screen.x, screen.width);
        at->y = within(at->y, placement.height + frameHeight, screen.y, screen.height);
    }
    return placement;
}

WindowPlacement kept(
    WindowPlacement const& wanted, WindowPlacement const& placed, WindowPlacement now)
{
    if (now.width == placed.width)
        now.width = wanted.width;
    if (now.height == placed.height)
        now.height = wanted.height;
    if (now.position == placed.position)
        now.position = wanted.position;
    return now;
}

} // namespace pixelhain
