#include "qt/window/EdgeStyle.h"
#include "qt/Contrast.h"
#include "qt/app/DesktopColors.h"
#include "qt/window/Menus.h"
#include "qt/window/SymbolIcon.h"
#include "window/MainToolbar.h"
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
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

/// A menu with one entry of each kind, as it is drawn in this style.
class ShownMenu {
public:
    ShownMenu(EdgeStyle& style, bool dark)
    {
        auto palette = dark ? darkPalette() : style.standardPalette();
        style.polish(palette);
        menu_.setStyle(&style);
        menu_.setPalette(palette);
        auto font = menu_.font();
        font.setPixelSize(32); // whose strokes are wider than a pixel
        menu_.setFont(font);
        fillMenu(menu_,
            { MenuEntry::heading("Mit Gehäuse"), MenuEntry {},
                MenuEntry::action("Mit Gehäuse", [] {}) });
        menu_.addAction(QStringLiteral("Mit Gehäuse"))->setEnabled(false);
        menu_.resize(menu_.sizeHint());
    }

    ~ShownMenu() { menu_.setStyle(nullptr); }

    QAction* heading() const { return menu_.actions().at(0); }
    QAction* divider() const { return menu_.actions().at(1); }
    QAction* disabled() const { return menu_.actions().at(3); }

    // The strongest one to the ground.
    double contrastIn(QAction* entry)
    {
        auto const image = drawn();
        auto const place = menu_.actionGeometry(entry);
        auto const ground = image.pixelColor(place.left() + 2, place.center().y());
        double strongest = 1;
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left() + 8; x < place.right() - 8; ++x)
                strongest = std::max(strongest, contrast(image.pixelColor(x, y), ground));
        return strongest;
    }

    double contrastOfChosen()
    {
        auto* const entry = menu_.actions().at(2);
        menu_.setActiveAction(entry);
        auto const image = drawn();
        auto const place = menu_.actionGeometry(entry);
        auto const ground = image.pixelColor(place.center().x(), place.top() + 2);
        auto const other = menu_.actionGeometry(heading());
        CHECK(ground != image.pixelColor(other.left() + 2, other.center().y()));
        return contrast(ground, menu_.palette().color(QPalette::HighlightedText));
    }

private:
    QImage drawn()
    {
        QImage image(menu_.size(), QImage::Format_RGB32);
        menu_.render(&image);
        return image;
    }

    QMenu menu_;
};

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

TEST_CASE("text that is disabled or a hint can be read, unless the desktop has its own colours")
{
    EdgeStyle style;
    auto palette = style.standardPalette();
    QColor const chosen(Qt::magenta);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, chosen);
    style.polish(palette);
    auto const at
        = [&](QPalette::ColorGroup group, QPalette::ColorRole text, QPalette::ColorRole ground) {
              return contrast(palette.color(group, text), palette.color(group, ground));
          };
    CHECK(at(QPalette::Disabled, QPalette::WindowText, QPalette::Window) >= 2.5);
    CHECK(at(QPalette::Disabled, QPalette::Text, QPalette::Window) >= 2.5);
    CHECK(at(QPalette::Active, QPalette::PlaceholderText, QPalette::Base) >= 4.5);
    CHECK(at(QPalette::Inactive, QPalette::PlaceholderText, QPalette::Base) >= 4.5);
    CHECK(palette.color(QPalette::Disabled, QPalette::ButtonText) == chosen);
    CHECK(at(QPalette::Active, QPalette::WindowText, QPalette::Window) >= 15);
}

TEST_CASE("menus can be read on light and on dark ground")
{
    EdgeStyle style;
    for (bool const dark : { false, true }) {
        CAPTURE(dark);
        ShownMenu menu(style, dark);
        CHECK(menu.contrastIn(menu.heading()) >= 4.5);
        CHECK(menu.contrastIn(menu.disabled()) >= 2.5);
        CHECK(menu.contrastIn(menu.divider()) >= 1.6);
        CHECK(menu.contrastIn(menu.divider()) < 3);
        CHECK(menu.contrastOfChosen() >= 4.5);
    }
}

TEST_CASE("the line under a menu bar has no gaps, whatever the scale")
{
    EdgeStyle style;
    QMenuBar bar;
    bar.setStyle(&style);
    for (auto const* const title : { "Datei", "Bearbeiten", "Ansicht", "Fotos" })
        bar.addMenu(QString::fromUtf8(title));
    bar.resize(600, bar.sizeHint().height());
    for (double const scale : { 1.0, 1.25, 1.5, 2.0 }) {
        CAPTURE(scale);
        QImage image((QSizeF(bar.size()) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        bar.render(&image);
        auto const right = image.width() - 9;
        auto const last = image.height() - 1;
        CHECK(image.pixel(right, last) != image.pixel(right, last / 2));
        int others = 0;
        for (int y = last - static_cast<int>(2 * scale) + 1; y <= last; ++y)
            for (int x = 0; x < image.width(); ++x)
                others += image.pixel(x, y) != image.pixel(right, y);
        CHECK(others == 0);
    }
    bar.setStyle(nullptr);
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
