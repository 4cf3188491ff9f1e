#pragma once
#include "ports/MainWindow.h"

namespace pixelhain {

/// A window that counts what it was asked for.
class FakeMainWindow final : public MainWindow {
public:
    void focusGallery() override { ++focusCount; }
    [[nodiscard]] bool isEditingText() const override { return editsText; }
    void beep() override { ++beepCount; }
    [[nodiscard]] bool isFullScreen() const override { return fullScreen; }
    void toggleFullScreen() override { fullScreen = !fullScreen; }
    void hidePointerUntilMoved() override { ++pointerHidings; }

    int focusCount = 0;
    int beepCount = 0;
    int pointerHidings = 0;
    bool editsText = false;
    bool fullScreen = false;
};

} // namespace pixelhain
