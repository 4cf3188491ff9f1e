#include "window/ThumbnailCell.h"
#include "support/FakeThumbnails.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

ThumbnailCell cellOf(std::string_view path)
{
    ThumbnailCell cell;
    cell.item.url = FileUrl(path);
    cell.size = 170;
    return cell;
}

} // namespace

TEST_CASE("a marked cell has a tinted ground and a thick accent frame")
{
    auto cell = cellOf("/b/1.jpg");
    CHECK(cell.background() == Tint { ColorRole::primary, 0.05 });
    CHECK(cell.frame() == Stroke { { ColorRole::clear }, 1.5 });
    cell.isCursor = true;
    CHECK(cell.frame() == Stroke { { ColorRole::secondary }, 1.5 });
    cell.isSelected = true;
    CHECK(cell.background() == Tint { ColorRole::accent, 0.18 });
    CHECK(cell.frame() == Stroke { { ColorRole::accent }, 3 });
}

TEST_CASE("a picture is fitted inside the square, its proportions kept")
{
    auto cell = cellOf("/b/1.jpg");
    CHECK_FALSE(cell.imageRect().has_value());
    cell.image = pictureOf(320, 160);
    CHECK(cell.imageRect() == Rect { 5, 45, 160, 80 });
    cell.image = pictureOf(160, 320);
    CHECK(cell.imageRect() == Rect { 45, 5, 80, 160 });
    cell.image = pictureOf(16, 16);
    CHECK(cell.imageRect() == Rect { 5, 5, 160, 160 });
}

TEST_CASE("the failure symbol shows only while there is no picture")
{
    auto cell = cellOf("/b/1.jpg");
    CHECK_FALSE(cell.showsFailure());
    cell.failed = true;
    CHECK(cell.showsFailure());
    cell.image = pictureOf(10, 10);
    CHECK_FALSE(cell.showsFailure());
    CHECK(ThumbnailCell::failedSymbol == "exclamationmark.triangle");
}

TEST_CASE("the badge names the format of an animation")
{
    auto cell = cellOf("/b/welle.Gif");
    CHECK_FALSE(cell.showsBadge());
    cell.meta = ImageMeta { {}, false };
    CHECK_FALSE(cell.showsBadge());
    cell.meta = ImageMeta { {}, true };
    CHECK(cell.showsBadge());
    CHECK(cell.badgeLabel() == "GIF");
    CHECK(cellOf("/b/x.webp").badgeLabel() == "WEBP");
    CHECK(ThumbnailCell::badgeTip == "Animiert");
}

TEST_CASE("the circle shows on a marked cell, under the pointer, and while any photo is marked")
{
    auto const shows = [](bool selected, bool hovering, bool active) {
        auto cell = cellOf("/b/1.jpg");
        cell.isSelected = selected;
        cell.hovering = hovering;
        cell.selectionActive = active;
        return cell.showsCircle();
    };
    CHECK_FALSE(shows(false, false, false));
    CHECK(shows(true, false, false));
    CHECK(shows(false, true, false));
    CHECK(shows(false, false, true));
}

TEST_CASE("the circle says what it does")
{
    auto cell = cellOf("/b/1.jpg");
    CHECK(cell.circleFill() == Tint { ColorRole::black, 0.3 });
    CHECK(cell.circleTip() == "Auswählen (X)");
    cell.isSelected = true;
    CHECK(cell.circleFill() == Tint { ColorRole::accent });
    CHECK(cell.circleTip() == "Auswahl entfernen (X)");
    CHECK(cell.circleRect() == Rect { 7, 7, 22, 22 });
}

TEST_CASE("the name is in the accent colour while marked")
{
    auto cell = cellOf("/b/gr\xFC\xDF.jpg");
    CHECK(cell.nameText() == "gr\uFFFD\uFFFD.jpg");
    CHECK(cell.nameTint() == Tint { ColorRole::secondary });
    cell.isSelected = true;
    CHECK(cell.nameTint() == Tint { ColorRole::accent });
}

TEST_CASE("a file without pixel size has a single blank as resolution line")
{
    auto cell = cellOf("/b/1.jpg");
    CHECK(cell.resolutionText() == " ");
    cell.meta = ImageMeta {};
    CHECK(cell.resolutionText() == " ");
    cell.meta = ImageMeta { PixelSize { 6000, 4000 }, false };
    CHECK(cell.resolutionText() == "6000 \u00D7 4000");
}

TEST_CASE("what stands for a picture is drawn in the very place of the picture")
{
    ThumbnailCell cell;
    cell.size = 170;
    cell.pixel = 256;
    CHECK_FALSE(cell.drawn());
    CHECK(cell.drawnShape() == PixelSize {});
    cell.embedded = pictureOf(160, 120);
    CHECK(cell.drawn() == cell.embedded);
    CHECK(cell.drawnShape() == PixelSize { 160, 120 });
    cell.meta = ImageMeta { PixelSize { 6000, 4000 }, false };
    CHECK(cell.drawnShape() == PixelSize { 256, 171 });
    CHECK_FALSE(cell.imageRect());
    CHECK_FALSE(cell.showsFailure());
    cell.image = pictureOf(256, 171);
    CHECK(cell.drawn() == cell.image);
    CHECK(cell.drawnShape() == PixelSize { 256, 171 });
}
