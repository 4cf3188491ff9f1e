#pragma once
#include "ports/MainLoop.h"
#include <QBasicTimer>
#include <QObject>
#include <deque>
#include <mutex>

namespace pixelhain {

/// The toolkit's event loop. Posted work runs in batches of a few milliseconds, so that a flood of
/// results leaves room for painting and input in between. Made on the main thread; outlives every
/// thread that posts.
class QtMainLoop final : public QObject, public MainLoop {
public:
    /// How long one batch of posted work may take before the window gets its turn.
    static constexpr std::chrono::milliseconds batch { 4 };

    void post(Work work) override;
    [[nodiscard]] Task after(std::chrono::milliseconds delay, Work work) override;

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    Work next();
    void runBatch();

    std::mutex lock_;
    std::deque<Work> posted_;
    bool woken_ = false; ///< a wake-up is on its way, or a batch goes on
    QBasicTimer rest_;
};

} // namespace pixelhain
