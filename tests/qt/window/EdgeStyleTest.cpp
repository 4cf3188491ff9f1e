#include "qt/window/EdgeStyle.h"
#include "qt/Contrast.h"
#include "qt/app/DesktopColors.h"
#include "qt/window/SymbolIcon.h"
#include "window/MainToolbar.h"
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QSpinBox>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// The strongest contrast to the window's ground that is found in the widget's first columns, where
// its left edge is.
double contrastOfEdge(QWidget& widget, QStyle& style)
{
    auto const palette = darkPalette();
    widget.setStyle(&style);
    widget.setPalette(palette);
    widget.resize(widget.sizeHint());
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(palette.color(QPalette::Window));
    widget.render(&image);
    auto const middle = image.height() / 2;
    double strongest = 1;
    for (int x = 0; x < 4; ++x)
        strongest = std::max(
            strongest, contrast(image.pixelColor(x, middle), palette.color(QPalette::Window)));
    widget.setStyle(nullptr);
    return strongest;
}

} // namespace

TEST_CASE("the edges of fields and of empty check boxes can be seen on dark ground")
{
    EdgeStyle style;
    QCheckBox box;
    QLineEdit line;
    QSpinBox number;
    QComboBox choice;
    CHECK(contrastOfEdge(box, style) >= 3);
    CHECK(contrastOfEdge(line, style) >= 3);
    CHECK(contrastOfEdge(number, style) >= 3);
    CHECK(contrastOfEdge(choice, style) >= 3);
}

TEST_CASE("what is too long for the menu bar is behind our own symbol")
{
    EdgeStyle style;
    auto const icon
        = style.standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton, nullptr, nullptr);
    auto const ours = symbolIcon(MainToolbar::moreSymbol, ColorRole::primary);
    REQUIRE_FALSE(ours.pixmap(16, 16).isNull());
    CHECK(icon.pixmap(16, 16).toImage() == ours.pixmap(16, 16).toImage());
}
