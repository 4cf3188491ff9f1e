#include "qt/window/DrawnPicture.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a picture fills the square on its longer side and keeps its proportions")
{
    CHECK(drawnSize({ 6000, 4000 }, 160) == PixelSize { 160, 107 });
    CHECK(drawnSize({ 100, 400 }, 160) == PixelSize { 40, 160 });
    CHECK(drawnSize({ 16, 16 }, 160) == PixelSize { 160, 160 });
    CHECK(drawnSize({ 10'000, 1 }, 160) == PixelSize { 160, 1 });
    CHECK(drawnSize({ 0, 5 }, 160) == PixelSize {});
    CHECK(drawnSize({ 5, 5 }, 0) == PixelSize {});
}

TEST_CASE("the image shares the bitmap's pixels and keeps them alive")
{
    auto bitmap = Bitmap::allocate({ 3, 2 }, true);
    std::fill_n(bitmap.row(0), bitmap.cost(), std::uint8_t { 200 });
    auto const* const pixels = bitmap.row(0);
    auto const image = imageOf(bitmap);
    bitmap = {};
    CHECK(image.constBits() == pixels);
    CHECK(image.format() == QImage::Format_RGB32);
    CHECK(qRed(image.pixel(2, 1)) == 200);
}

TEST_CASE("a bitmap with holes is painted with them")
{
    auto const bitmap = Bitmap::allocate({ 3, 2 }, false);
    CHECK(imageOf(bitmap).format() == QImage::Format_ARGB32_Premultiplied);
    CHECK(imageOf({}).isNull());
}

TEST_CASE("a picture that has its drawn size already is not made anew")
{
    auto const bitmap = Bitmap::allocate({ 160, 100 }, true);
    CHECK(drawnPicture(bitmap, { 160, 100 }).constBits() == bitmap.row(0));
    CHECK(drawnPicture(bitmap, { 80, 50 }).size() == QSize(80, 50));
}
