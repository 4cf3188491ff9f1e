#pragma once
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <functional>

namespace pixelhain {

/// Brings a scroll position to its goal in a quick, slowing motion. Goals may change on the way.
class SmoothScroll final : public QObject {
public:
    /// The time in which the way that is left shrinks to about a third.
    static constexpr double milliseconds = 55;

    explicit SmoothScroll(std::function<void(double position)> move)
        : move_(std::move(move))
    {
    }

    bool isMoving() const { return timer_.isActive(); }
    double goal() const { return goal_; }

    void start(double from, double goal, int frameMilliseconds);
    void stop() { timer_.stop(); }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    std::function<void(double)> move_;
    QBasicTimer timer_;
    QElapsedTimer clock_;
    double position_ = 0;
    double goal_ = 0;
};

} // namespace pixelhain
