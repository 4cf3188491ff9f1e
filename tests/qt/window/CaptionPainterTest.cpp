#include "qt/window/CaptionPainter.h"
#include "qt/Contrast.h"
#include "qt/app/DesktopColors.h"
#include <QApplication>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

QColor drawnColor(QPalette const& palette, bool isMarked)
{
    CaptionPainter captions(
        Tones(palette, Tones::Ground::gallery), QApplication::font(), /* scale */ 1);
    ThumbnailCell cell;
    cell.item.url = FileUrl("/f/IMG_1.jpg");
    cell.size = 160;
    cell.isSelected = isMarked;
    DrawnCell drawn;
    captions.draw(cell, drawn);
    CHECK(captions.isDrawn(cell, drawn));
    return drawn.name.color;
}

} // namespace

TEST_CASE("the names of photos can be read, of marked ones too, in light and dark colours")
{
    for (auto const& palette : { QApplication::palette(), darkPalette() }) {
        auto const ground = palette.color(QPalette::Base);
        auto const plain = drawnColor(palette, false);
        auto const marked = drawnColor(palette, true);
        CHECK(contrast(plain, ground) >= 4.5);
        CHECK(contrast(marked, ground) >= 4.5);
        CHECK(marked != plain);
    }
}
