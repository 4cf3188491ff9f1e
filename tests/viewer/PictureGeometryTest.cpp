#include "viewer/PictureGeometry.h"
#include "base/Resample.h"
#include <cmath>
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a picture fills its area in one direction, smaller ones are enlarged")
{
    CHECK(fittedInto({ 1920, 1080 }, { 6000, 4000 }) == PixelSize { 1620, 1080 });
    CHECK(fittedInto({ 1920, 1080 }, { 4000, 1000 }) == PixelSize { 1920, 480 });
    CHECK(fittedInto({ 1920, 1080 }, { 1000, 3000 }) == PixelSize { 360, 1080 });
    CHECK(fittedInto({ 1920, 1080 }, { 10, 10 }) == PixelSize { 1080, 1080 });
    CHECK(fittedInto({ 1920, 1080 }, { 100'000, 1 }) == PixelSize { 1920, 1 });
    CHECK(fittedInto({ 0, 1080 }, { 10, 10 }) == PixelSize {});
    CHECK(fittedInto({ 1920, 1080 }, {}) == PixelSize {});
}

TEST_CASE("a picture lies in the middle, is magnified around it and then moved")
{
    PictureArea const area { { 1920, 1080 }, 1 };
    PixelSize const picture { 6000, 4000 };
    CHECK(picturePlace(area, picture, {}) == PixelRect { 150, 0, 1620, 1080 });
    CHECK(picturePlace(area, picture, { 2, {} }) == PixelRect { -660, -540, 3240, 2160 });
    CHECK(picturePlace(area, picture, { 2, { 100, -50 } }) == PixelRect { -560, -590, 3240, 2160 });
    CHECK(picturePlace({ { 1920, 1080 }, 2 }, picture, { 2, { 100, -50 } })
        == PixelRect { -460, -640, 3240, 2160 });
    CHECK(picturePlace(area, picture, { 2, { 1e12, 0 } }).x > 1920);
    CHECK(picturePlace(area, {}, {}).isEmpty());
}

TEST_CASE("an odd rest of room never moves the middle by more than half a pixel")
{
    PictureArea const area { { 1920, 1080 }, 1 };
    for (double scale = 1; scale < 10; scale += 0.0137) {
        auto const place = picturePlace(area, { 6000, 4000 }, { scale, {} });
        CHECK(std::abs(place.x + place.width / 2.0 - 960) <= 0.5);
        CHECK(std::abs(place.y + place.height / 2.0 - 540) <= 0.5);
    }
}

TEST_CASE("at the pixel scale the picture has exactly its own size")
{
    for (auto const picture : { PixelSize { 6000, 4000 }, PixelSize { 12240, 8160 },
             PixelSize { 4001, 2999 }, PixelSize { 3333, 9999 } }) {
        PictureArea const area { { 1913, 1077 }, 1 };
        auto const scale = pixelScale(area, picture);
        CHECK(picturePlace(area, picture, { scale, {} }).size() == picture);
    }
    CHECK(pixelScale({ { 1920, 1080 }, 1 }, { 6000, 4000 }) == doctest::Approx(4000.0 / 1080));
    CHECK(pixelScale({}, { 1, 1 }) == 1);
}

TEST_CASE("a zoomed picture is measured by the photo, which rounding does not change")
{
    PixelSize const photo { 6000, 4000 };
    for (int side : { 1024, 1919, 2880, 3841 })
        CHECK(measuredSize(fittedSize(photo, side), photo, 2) == photo);
    PixelSize const odd { 5999, 337 };
    CHECK(measuredSize(fittedSize(odd, 1920), odd, 2) == odd);
}

TEST_CASE("a fitted picture, or one of other proportions than the photo, is measured by itself")
{
    CHECK(measuredSize({ 1920, 1280 }, PixelSize { 6000, 4000 }, 1) == PixelSize { 1920, 1280 });
    CHECK(measuredSize({ 1620, 1080 }, PixelSize { 6000, 3900 }, 2) == PixelSize { 1620, 1080 });
    CHECK(measuredSize({ 1080, 1620 }, PixelSize { 6000, 4000 }, 2) == PixelSize { 1080, 1620 });
    CHECK(measuredSize({ 1080, 1620 }, std::nullopt, 2) == PixelSize { 1080, 1620 });
}
