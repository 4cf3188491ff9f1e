#pragma once
#include <QBasicTimer>
#include <QLabel>
#include <QWidget>

namespace pixelhain {

/// The capsule that says that the slideshow is paused.
class PauseLabel final : public QWidget {
public:
    explicit PauseLabel(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// What stands in place of a photo that cannot be read.
class FailureView final : public QWidget {
public:
    explicit FailureView(QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;

private:
    void useColors();

    QLabel* symbol_;
    QLabel* text_;
};

/// A large turning wheel while a photo is being read. It comes a moment late, so that a photo that
/// is read quickly does not flash; it moves only while it is to be seen.
class LargeSpinner final : public QWidget {
public:
    static constexpr int delayMilliseconds = 120;

    explicit LargeSpinner(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QBasicTimer timer_;
    int step_ = -1; ///< below 0: not to be seen yet
};

} // namespace pixelhain
