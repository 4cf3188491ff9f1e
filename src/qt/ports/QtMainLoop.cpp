#include "qt/ports/QtMainLoop.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimerEvent>
#include <algorithm>
#include <limits>
#include <memory>

namespace pixelhain {

namespace {

QEvent::Type const wakeUp = static_cast<QEvent::Type>(QEvent::registerEventType());

class Timer final : public QObject {
public:
    Timer(std::chrono::milliseconds delay, MainLoop::Work work)
        : work_(std::move(work))
    {
        using Count = std::chrono::milliseconds::rep;
        auto const longest = static_cast<Count>(std::numeric_limits<int>::max());
        timer_.start(
            static_cast<int>(std::clamp<Count>(delay.count(), 0, longest)), Qt::PreciseTimer, this);
    }

    void cancel()
    {
        timer_.stop();
        work_ = nullptr;
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        timer_.stop();
        // The work may drop the task that owns this timer.
        if (auto const work = std::exchange(work_, nullptr))
            work();
    }

private:
    QBasicTimer timer_;
    MainLoop::Work work_;
};

} // namespace

void QtMainLoop::post(Work work)
{
    bool wake = false;
    {
        std::scoped_lock const guard(lock_);
        posted_.push_back(std::move(work));
        wake = !std::exchange(woken_, true);
    }
    if (wake)
        QCoreApplication::postEvent(this, new QEvent(wakeUp));
}

Task QtMainLoop::after(std::chrono::milliseconds delay, Work work)
{
    auto const later = [](Timer* timer) { timer->deleteLater(); };
    auto const timer = std::shared_ptr<Timer>(new Timer(delay, std::move(work)), later);
    return Task([timer] { timer->cancel(); });
}

bool QtMainLoop::event(QEvent* event)
{
    if (event->type() != wakeUp)
        return QObject::event(event);
    runBatch();
    return true;
}

void QtMainLoop::timerEvent(QTimerEvent*)
{
    runBatch();
}

QtMainLoop::Work QtMainLoop::next()
{
    std::scoped_lock const guard(lock_);
    if (posted_.empty()) {
        woken_ = false;
        return nullptr;
    }
    auto work = std::move(posted_.front());
    posted_.pop_front();
    return work;
}

// What is left after a batch waits for a timer without delay: the loop serves input and painting
// before such a timer, which it would not do for another posted event.
void QtMainLoop::runBatch()
{
    rest_.stop();
    QElapsedTimer clock;
    clock.start();
    while (auto const work = next()) {
        work();
        if (clock.hasExpired(batch.count())) {
            rest_.start(0, this);
            return;
        }
    }
}

} // namespace pixelhain
