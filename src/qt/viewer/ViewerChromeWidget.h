#pragma once
#include "viewer/ViewerChrome.h"
#include <QWidget>
#include <array>
#include <functional>

class QLabel;

namespace pixelhain {

class ChromeButton;
class ElidedLabel;

/// The bar at the top of the viewer.
class ViewerChromeWidget final : public QWidget {
public:
    /// `perform` is called with the button that was pressed, and where a menu of it belongs.
    using Perform = std::function<void(ViewerChrome::Action, QPoint)>;
    ViewerChromeWidget(Perform perform, QWidget* parent);

    void show(ViewerChrome const& chrome);
    ChromeButton* button(ViewerChrome::Action action) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void useFonts();
    void useColors();

    std::array<ChromeButton*, ViewerChrome::order.size()> buttons_ {};
    QLabel* position_;
    ElidedLabel* name_;
};

} // namespace pixelhain
