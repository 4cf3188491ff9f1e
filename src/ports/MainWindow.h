#pragma once

namespace pixelhain {

/// The main window, as far as the logic asks anything of it. Main thread only.
class MainWindow {
public:
    virtual ~MainWindow() = default;

    /// Takes the keyboard focus from any control, so that keys go to the gallery.
    virtual void focusGallery() = 0;
};

} // namespace pixelhain
