#pragma once
#include "window/MenuEntry.h"
#include <QToolButton>
#include <functional>
#include <string_view>

namespace pixelhain {

/// A button of the toolbar: a symbol, a label beside it where there is room, and a small arrow if a
/// menu opens.
class ToolbarButton final : public QToolButton {
public:
    ToolbarButton(std::string_view symbol, std::string_view title, QWidget* parent);

    /// Has a click open a menu, which is filled each time.
    void setEntries(std::function<std::vector<MenuEntry>()> entries);

    /// Called when the button is used, before anything comes of it.
    std::function<void()> used;

    void setShowsLabel(bool shows);
    int wantedWidth(bool withLabel) const;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage drawnSymbol() const;
    void paintGround(QPainter& painter) const;

    std::string_view symbol_;
    bool showsLabel_ = false;
};

} // namespace pixelhain
