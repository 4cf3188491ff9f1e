#pragma once

namespace pixelhain {

/// The main window, as far as the logic asks anything of it. Main thread only.
class MainWindow {
public:
    virtual ~MainWindow() = default;

    /// Takes the keyboard focus from any control, so that keys go to the gallery.
    virtual void focusGallery() = 0;

    /// Whether the focus is in a field where text is typed.
    [[nodiscard]] virtual bool isEditingText() const = 0;

    /// The desktop's sound for "this cannot be done".
    virtual void beep() = 0;

    [[nodiscard]] virtual bool isFullScreen() const = 0;
    virtual void toggleFullScreen() = 0;

    /// The pointer is not seen over the window until it is moved.
    virtual void hidePointerUntilMoved() = 0;
};

} // namespace pixelhain
