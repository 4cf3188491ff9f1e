#pragma once

namespace pixelhain {

struct KeyEvent;

/// What a key means to the gallery or the viewer.
enum class KeyAction {
    none, ///< not ours
    selectAll,
    selectNone,
    openViewer,
    unmarkAll, ///< only if photos are marked
    firstPhoto,
    lastPhoto,
    left,
    right,
    up,
    down,
    toggleMark,
    slideshow,
    larger,
    smaller,
    closeViewer,
    pauseOrClose, ///< a slideshow pauses or goes on; without one the viewer closes
    showFirst,
    showLast,
    previous,
    next,
    markAndMoveOn,
    toggleInfo,
    toggleFullScreen,
};

/// The meaning of a key while the gallery shows, and while the viewer does. The place of a key on
/// the keyboard comes before its character; letter case is ignored. Keys held with ⌥ or ⌃ mean
/// nothing, with ⌘ only A does.
[[nodiscard]] KeyAction galleryAction(KeyEvent const& event);
[[nodiscard]] KeyAction viewerAction(KeyEvent const& event);

[[nodiscard]] bool isArrowKey(KeyEvent const& event);

/// Whether this is Escape, with no modifier but Shift.
[[nodiscard]] bool isEscape(KeyEvent const& event);

} // namespace pixelhain
