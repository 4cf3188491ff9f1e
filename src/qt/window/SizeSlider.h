#pragma once
#include <QSlider>
#include <functional>

namespace pixelhain {

/// A slider that jumps to where it is clicked and follows the pointer from there. Drawn by us, so
/// that it is as wide as it says under every style.
class SizeSlider final : public QSlider {
public:
    explicit SizeSlider(QWidget* parent);

    /// Shows a value without telling anybody.
    void follow(double value);

    /// Called with each value that the user chooses.
    std::function<void(double)> chosen;

    QSize sizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void moveTo(double x);
    double knobCentre() const;
};

} // namespace pixelhain
