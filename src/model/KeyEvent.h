#pragma once
#include <string>

namespace pixelhain {

class MainWindow;

/// Key codes: the positions of a US keyboard, whatever is printed on the keys.
namespace keyCodes {
inline constexpr int returnKey = 36;
inline constexpr int space = 49;
inline constexpr int escape = 53;
inline constexpr int keypadEnter = 76;
inline constexpr int home = 115;
inline constexpr int end = 119;
inline constexpr int left = 123;
inline constexpr int right = 124;
inline constexpr int down = 125;
inline constexpr int up = 126;
inline constexpr int other = -1; ///< any key without a meaning by its position
} // namespace keyCodes

/// What has the keyboard focus, as far as keys care.
enum class KeyFocus { gallery, textView, tableView };

/// The keys held while a cell was clicked.
struct ClickModifiers {
    bool command = false; ///< ⌘, here Ctrl: marks or unmarks
    bool shift = false; ///< marks a range
};

/// A key that went down.
struct KeyEvent {
    int keyCode = keyCodes::other;
    std::string characters {}; ///< UTF-8, as if no modifier but Shift were held; may be empty
    bool command = false; ///< ⌘, here Ctrl
    bool shift = false;
    bool option = false; ///< ⌥, here Alt
    bool control = false; ///< ⌃, here Meta
    KeyFocus focus = KeyFocus::gallery;
    MainWindow const* window = nullptr; ///< where it was typed
    bool windowIsSheet = false;
    bool windowHasSheet = false;
};

} // namespace pixelhain
