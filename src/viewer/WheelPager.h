#pragma once
#include "base/Task.h"
#include <chrono>

namespace pixelhain {

class MainLoop;

/// Turns of the wheel as steps from photo to photo: one for each notch, or for as many small turns
/// as make one; never one past a photo that has not been shown yet. Main thread only.
class WheelPager {
public:
    static constexpr double notch = 120; ///< the toolkit's units
    static constexpr std::chrono::milliseconds forgetAfter { 400 }; ///< of part of a notch

    explicit WheelPager(MainLoop& loop)
        : loop_(loop)
    {
    }

    /// The step that a turn leads to: +1 for one towards the user, -1, or 0.
    [[nodiscard]] int turn(double angle);

    /// To be called when another photo is to be shown, and when it is on the screen.
    void wait() { isWaiting_ = true; }
    void shown() { isWaiting_ = false; }

private:
    MainLoop& loop_;
    double turned_ = 0;
    bool isWaiting_ = false;
    Task forget_;
};

} // namespace pixelhain
