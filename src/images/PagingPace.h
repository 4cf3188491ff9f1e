#pragma once
#include "base/FileUrl.h"
#include "base/Task.h"
#include "ports/MainLoop.h"
#include <chrono>
#include <functional>

namespace pixelhain {

/// Whether somebody pages through photos faster than large pictures are decoded. Main thread only.
class PagingPace {
public:
    /// Steps that follow each other sooner are a hurry: a key that is held down comes every 30 to
    /// 40 ms, one that is hit as fast as can be every 60.
    static constexpr std::chrono::milliseconds pause { 55 };

    /// `rested` is called when a hurry has ended. The loop outlives this.
    PagingPace(MainLoop& loop, std::function<void()> rested)
        : loop_(loop)
        , rested_(std::move(rested))
    {
    }

    /// A photo is shown now; the same again is no step.
    void step(FileUrl const& shown);

    [[nodiscard]] bool isHasty() const { return isHasty_; }

private:
    MainLoop& loop_;
    std::function<void()> rested_;
    FileUrl shown_;
    bool isHasty_ = false;
    Task pause_; ///< since the last step
};

} // namespace pixelhain
