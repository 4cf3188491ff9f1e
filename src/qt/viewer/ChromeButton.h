#pragma once
#include "viewer/ViewerChrome.h"
#include <QAbstractButton>
#include <functional>

namespace pixelhain {

/// A button of the viewer's bar: a symbol without a border, lit under the pointer, with a ring
/// while it has the keyboard.
class ChromeButton final : public QAbstractButton {
public:
    explicit ChromeButton(QWidget* parent = nullptr);

    void show(ViewerChrome::Button const& look);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    ViewerChrome::Button look_;
};

/// A wide, nearly invisible button at a side of the viewer.
class SideArrow final : public QAbstractButton {
public:
    SideArrow(ViewerChrome::Side side, QWidget* parent);

    ViewerChrome::Side side() const { return side_; }
    void show(ViewerChrome::Arrow const& look);

    /// Called when the pointer comes or goes.
    std::function<void(bool)> hovered;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    ViewerChrome::Side side_;
    ViewerChrome::Arrow look_;
};

} // namespace pixelhain
