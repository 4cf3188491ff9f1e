#pragma once
#include "base/Task.h"
#include <string_view>

namespace pixelhain {

/// Keeps the screen from going dark or being locked while nobody touches anything. Main thread
/// only; nothing waits for it and nothing is reported.
class ScreenAwake {
public:
    virtual ~ScreenAwake() = default;

    /// Until the task is dropped. `reason` is what the desktop shows people who ask it why.
    [[nodiscard]] virtual Task keepAwake(std::string_view reason) = 0;
};

} // namespace pixelhain
