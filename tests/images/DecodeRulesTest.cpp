#include "images/DecodeRules.h"
#include "support/FakeImageSource.h"
#include <doctest/doctest.h>

using namespace pixelhain;

using Calls = std::vector<std::string>;

TEST_CASE("the preview threshold is three quarters, rounded down")
{
    CHECK(previewThreshold(256) == 192);
    CHECK(previewThreshold(300) == 225);
    CHECK(previewThreshold(255) == 191);
    CHECK(previewThreshold(1) == 0);
}

TEST_CASE("a preview of exactly the threshold is accepted, one pixel less is not")
{
    PixelSize const picture { 4000, 3000 };
    CHECK(acceptsPreview({ 192, 128 }, 256, picture));
    CHECK(acceptsPreview({ 128, 192 }, 256, picture));
    CHECK_FALSE(acceptsPreview({ 191, 128 }, 256, picture));
}

TEST_CASE("maxPixel 1 accepts any preview")
{
    FakeImageSource source;
    source.storedPreviews = { { 2, 1 } };
    auto const picture = decodeImage(source, 1, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->origin == PixelOrigin::embedded);
    CHECK(source.calls == Calls { "preview 0 1" });
}

TEST_CASE("a preview of 160 with maxPixel 256 is rejected unless the picture measures at most 162")
{
    FakeImageSource source;
    source.storedPreviews = { { 160, 120 } };
    SUBCASE("163")
    {
        source.storedSize = PixelSize { 122, 163 };
        auto const picture = decodeImage(source, 256, EmbeddedPreviews::prefer);
        REQUIRE(picture);
        CHECK(picture->origin == PixelOrigin::full);
        CHECK(source.calls == Calls { "decode 256" });
    }
    SUBCASE("162")
    {
        source.storedSize = PixelSize { 162, 122 };
        auto const picture = decodeImage(source, 256, EmbeddedPreviews::prefer);
        REQUIRE(picture);
        CHECK(picture->origin == PixelOrigin::embedded);
        CHECK(picture->bitmap.size == PixelSize { 160, 120 });
        CHECK(source.calls == Calls { "preview 0 256" });
    }
}

TEST_CASE("a file without pixel dimensions never accepts a preview below the threshold")
{
    FakeImageSource source;
    source.storedSize.reset();
    source.storedPreviews = { { 160, 120 } };
    auto const picture = decodeImage(source, 256, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->origin == PixelOrigin::full);
    CHECK(source.calls == Calls { "decode 256" });
}

TEST_CASE("a file without pixel dimensions accepts a preview that reaches the threshold")
{
    FakeImageSource source;
    source.storedSize.reset();
    source.storedPreviews = { { 192, 144 } };
    auto const picture = decodeImage(source, 256, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->origin == PixelOrigin::embedded);
}

TEST_CASE("the smallest preview that satisfies the rule is taken")
{
    FakeImageSource source;
    source.storedPreviews = { { 160, 120 }, { 640, 480 }, { 1620, 1080 } };
    auto const picture = decodeImage(source, 384, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 384, 288 });
    CHECK(source.calls == Calls { "preview 1 384" });
}

TEST_CASE("a damaged preview gives way to the next larger one, then to the picture")
{
    FakeImageSource source;
    source.storedPreviews = { { 160, 120 }, { 640, 480 }, { 1620, 1080 } };
    source.damagedPreviews = { 1 };
    CHECK(decodeImage(source, 384, EmbeddedPreviews::prefer));
    CHECK(source.calls == Calls { "preview 1 384", "preview 2 384" });

    source.calls.clear();
    source.damagedPreviews = { 1, 2 };
    auto const picture = decodeImage(source, 384, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->origin == PixelOrigin::full);
    CHECK(source.calls == Calls { "preview 1 384", "preview 2 384", "decode 384" });
}

TEST_CASE("previews are left alone where they are not asked for")
{
    FakeImageSource source;
    source.storedPreviews = { { 640, 480 } };
    CHECK(decodeImage(source, 384, EmbeddedPreviews::ignore));
    CHECK(source.calls == Calls { "decode 384" });
}

TEST_CASE("an image reduced while it was read says so")
{
    FakeImageSource source;
    source.wasReduced = true;
    auto const picture = decodeImage(source, 384, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->origin == PixelOrigin::scaled);
}

TEST_CASE("a palette GIF of 100 x 80 with maxPixel 512 is redrawn at 100 x 80, not enlarged")
{
    FakeImageSource source;
    source.type = "com.compuserve.gif";
    source.storedSize = PixelSize { 100, 80 };
    source.isIndexed = true;
    CHECK(mustRedraw(*source.decode(512), 512, true));
    auto const picture = decodeImage(source, 512, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 100, 80 });
}

TEST_CASE("an RGB JPEG whose reduced read is 512 x 384 for maxPixel 512 is returned as produced")
{
    FakeImageSource source;
    auto const produced = source.decode(512);
    REQUIRE(produced);
    CHECK(produced->bitmap.size == PixelSize { 512, 384 });
    CHECK_FALSE(mustRedraw(*produced, 512, true));
    auto const picture = decodeImage(source, 512, EmbeddedPreviews::ignore);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 512, 384 });
}

TEST_CASE("an image is redrawn if it has no colour space, is too large, or was read whole")
{
    DecodedImage image { grayBitmap({ 20, 10 }) };
    CHECK_FALSE(mustRedraw(image, 20, true));
    CHECK(mustRedraw(image, 19, true));
    CHECK(mustRedraw(image, 20, false));
    image.hasColorSpace = false;
    CHECK(mustRedraw(image, 20, true));
}

TEST_CASE("a codec that yields more than was asked for is reduced to it")
{
    FakeImageSource source;
    source.decodedSize = PixelSize { 1000, 750 };
    auto const picture = decodeImage(source, 500, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 500, 375 });
}

TEST_CASE("the picture is read whole, as stored, and reduced when it cannot be had reduced")
{
    FakeImageSource source;
    source.failsToDecode = true;
    source.storedSize = PixelSize { 400, 300 };
    source.storedOrientation = 6;
    auto const picture = decodeImage(source, 200, EmbeddedPreviews::prefer);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 200, 150 });
    CHECK(picture->origin == PixelOrigin::full);
    CHECK(source.calls == Calls { "decode 200", "whole" });
}

TEST_CASE("a file of which nothing can be read yields nothing")
{
    FakeImageSource source;
    source.failsToDecode = true;
    source.failsWhole = true;
    CHECK_FALSE(decodeImage(source, 200, EmbeddedPreviews::prefer));
}

TEST_CASE("the JPEG that is passed on is the one that would be decoded")
{
    FakeImageSource source;
    source.codedSize = PixelSize { 160, 120 };
    source.storedPreviews = { { 100, 75 }, { 160, 120 }, { 640, 480 } };
    SUBCASE("the smallest preview that satisfies the rule")
    {
        auto const picture = passedJpeg(source, 170, EmbeddedPreviews::prefer);
        REQUIRE(picture);
        CHECK(picture->jpeg);
        CHECK(picture->bitmap.isEmpty());
        CHECK(picture->origin == PixelOrigin::embedded);
        CHECK(source.calls == Calls { "coded preview 1 170" });
    }
    SUBCASE("the picture, where previews are left alone")
    {
        source.storedSize = PixelSize { 170, 128 };
        auto const picture = passedJpeg(source, 170, EmbeddedPreviews::ignore);
        REQUIRE(picture);
        CHECK(picture->origin == PixelOrigin::full);
        CHECK(source.calls == Calls { "coded 170" });
    }
    SUBCASE("no picture that is larger than the answer")
    {
        source.storedSize = PixelSize { 171, 128 };
        CHECK_FALSE(passedJpeg(source, 170, EmbeddedPreviews::ignore));
        CHECK(source.calls.empty());
    }
    SUBCASE("no picture of unknown size")
    {
        source.storedSize.reset();
        CHECK_FALSE(passedJpeg(source, 170, EmbeddedPreviews::ignore));
        CHECK(source.calls.empty());
    }
}

TEST_CASE("a preview that cannot be passed on is decoded, and no other one passed in its place")
{
    FakeImageSource source;
    source.storedSize = PixelSize { 170, 128 };
    source.storedPreviews = { { 160, 120 } };
    CHECK_FALSE(passedJpeg(source, 170, EmbeddedPreviews::prefer));
    CHECK(source.calls == Calls { "coded preview 0 170" });
}

TEST_CASE("the full image has the picture's own size, and needs it to be stated")
{
    FakeImageSource source;
    source.storedSize = PixelSize { 300, 400 };
    source.storedPreviews = { { 300, 400 } };
    auto const picture = decodeFullImage(source);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 300, 400 });
    CHECK(source.calls == Calls { "decode 400" });

    source.storedSize.reset();
    CHECK_FALSE(decodeFullImage(source));
}

TEST_CASE("redrawing 1000 x 1 at maxPixel 10 gives 10 x 1")
{
    CHECK(redrawnSize({ 1000, 1 }, 10) == PixelSize { 10, 1 });
    CHECK(redrawScaled(grayBitmap({ 1000, 1 }), 10).size == PixelSize { 10, 1 });
}

TEST_CASE("redrawn sides are rounded to the nearest pixel, halves up, and never enlarged")
{
    CHECK(redrawnSize({ 1000, 250 }, 10) == PixelSize { 10, 3 });
    CHECK(redrawnSize({ 1000, 249 }, 10) == PixelSize { 10, 2 });
    CHECK(redrawnSize({ 250, 1000 }, 10) == PixelSize { 3, 10 });
    CHECK(redrawnSize({ 100, 80 }, 512) == PixelSize { 100, 80 });
}

TEST_CASE("redrawing keeps a plain area plain and a bright half bright")
{
    auto picture = grayBitmap({ 40, 20 }, 10);
    for (int y = 0; y < 20; ++y)
        std::memset(picture.row(y), 250, 80);
    auto const small = redrawScaled(picture, 10);
    REQUIRE(small.size == PixelSize { 10, 5 });
    for (int y = 0; y < 5; ++y) {
        CHECK(small.row(y)[0] == 250);
        CHECK(small.row(y)[39] == 10);
    }
}

TEST_CASE("orientations that turn the picture by a quarter swap its sides")
{
    FakeImageSource source;
    source.storedSize = PixelSize { 4000, 3000 };
    for (int const upright : { 1, 2, 3, 4 }) {
        source.storedOrientation = upright;
        CHECK(readMeta(source).size == PixelSize { 4000, 3000 });
    }
    for (int const turned : { 5, 6, 7, 8 }) {
        source.storedOrientation = turned;
        CHECK(readMeta(source).size == PixelSize { 3000, 4000 });
    }
    source.storedSize.reset();
    CHECK_FALSE(readMeta(source).size);
}

TEST_CASE("GIF, PNG and WebP of several frames are animated")
{
    FakeImageSource source;
    for (auto const* type : { "com.compuserve.gif", "public.png", "org.webmproject.webp" }) {
        source.type = type;
        source.frames = 2;
        CHECK(readMeta(source).isAnimated);
        source.frames = 1;
        CHECK_FALSE(readMeta(source).isAnimated);
    }
}

TEST_CASE("a multi-page TIFF is not animated, and its pages are not counted")
{
    FakeImageSource source;
    source.type = "public.tiff";
    source.frames = 5;
    CHECK_FALSE(readMeta(source).isAnimated);
    CHECK(source.calls.empty());
}

TEST_CASE("a first look yields the metadata and the smallest preview below what is wanted")
{
    FakeImageSource source;
    source.storedOrientation = 6;
    source.storedPreviews = { { 120, 160 }, { 1080, 1620 } };
    auto const glance = glanceAt(source, 256);
    CHECK(glance.meta == ImageMeta { PixelSize { 3000, 4000 }, false });
    CHECK(glance.embedded.size == PixelSize { 120, 160 });
    CHECK(glance.isQuick);
    CHECK(source.calls == Calls { "preview 0 256" });
}

TEST_CASE("a preview that will do is not decoded at a first look, because it comes soon")
{
    FakeImageSource source;
    source.storedPreviews = { { 192, 128 }, { 1620, 1080 } };
    auto const glance = glanceAt(source, 256);
    CHECK(glance.embedded.isEmpty());
    CHECK(glance.isQuick);
    CHECK(source.calls.empty());
}

TEST_CASE("a photo whose previews are all too small takes its time")
{
    FakeImageSource source;
    source.storedPreviews = { { 100, 75 }, { 160, 120 } };
    auto const glance = glanceAt(source, 256);
    CHECK(glance.embedded.size == PixelSize { 100, 75 });
    CHECK_FALSE(glance.isQuick);
}

TEST_CASE("a damaged preview gives way to the next one that is too small, at a first look too")
{
    FakeImageSource source;
    source.storedPreviews = { { 100, 75 }, { 160, 120 }, { 320, 240 } };
    source.damagedPreviews = { 0 };
    CHECK(glanceAt(source, 512).embedded.size == PixelSize { 160, 120 });
    source.damagedPreviews = { 0, 1, 2 };
    auto const none = glanceAt(source, 512);
    CHECK(none.embedded.isEmpty());
    CHECK(none.meta.size == PixelSize { 4000, 3000 });
}

TEST_CASE("a photo without previews yields its metadata at a first look")
{
    FakeImageSource source;
    source.type = "com.compuserve.gif";
    source.frames = 3;
    source.storedSize = std::nullopt;
    auto const glance = glanceAt(source, 256);
    CHECK(glance.meta == ImageMeta { std::nullopt, true });
    CHECK(glance.embedded.isEmpty());
    CHECK_FALSE(glance.isQuick);
}

TEST_CASE("where only previews are wanted, it is the smallest that will do, else the largest below")
{
    FakeImageSource source;
    source.storedPreviews = { { 160, 120 }, { 1616, 1212 }, { 3200, 2400 } };
    auto const best = [&source](int maxPixel) {
        source.calls.clear();
        auto const picture = decodeImage(source, maxPixel, EmbeddedPreviews::only);
        if (picture)
            CHECK(picture->origin == PixelOrigin::embedded);
        return source.calls;
    };
    CHECK(best(1920) == Calls { "preview 1 1920" });
    CHECK(best(2880) == Calls { "preview 2 2880" });
    CHECK(best(3840) == Calls { "preview 2 3840" });
    CHECK(best(7680) == Calls { "preview 2 7680" });
    source.damagedPreviews = { 1 };
    CHECK(best(1920) == Calls { "preview 1 1920", "preview 0 1920" });
    source.damagedPreviews = { 0, 1, 2 };
    CHECK_FALSE(decodeImage(source, 1920, EmbeddedPreviews::only));
    source.storedPreviews.clear();
    source.calls.clear();
    CHECK_FALSE(decodeImage(source, 1920, EmbeddedPreviews::only));
    CHECK(source.calls.empty());
}

TEST_CASE("a preview with many times the pixels that are wanted is left for the picture itself")
{
    FakeImageSource source;
    source.storedPreviews = { { 160, 120 }, { 6000, 4500 } };
    auto const picture = decodeImage(source, 1920, EmbeddedPreviews::only);
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 160, 120 });
    source.storedPreviews = { { 6000, 4500 } };
    CHECK_FALSE(decodeImage(source, 1920, EmbeddedPreviews::only));
}
