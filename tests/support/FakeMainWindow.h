#pragma once
#include "ports/MainWindow.h"

namespace pixelhain {

/// A window that counts what it was asked for.
class FakeMainWindow final : public MainWindow {
public:
    void focusGallery() override { ++focusCount; }
    int focusCount = 0;
};

} // namespace pixelhain
