#pragma once
#include <QBasicTimer>
#include <QWidget>

namespace pixelhain {

/// A small turning wheel: something is under way. It moves only while it is to be seen.
class ActivityIndicator final : public QWidget {
public:
    explicit ActivityIndicator(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QBasicTimer timer_;
    int step_ = 0;
};

} // namespace pixelhain
