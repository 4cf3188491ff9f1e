#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("WebPs, lossy or lossless, come out with their size and colours")
{
    for (auto const isLossless : { false, true }) {
        for (auto const hasAlpha : { false, true }) {
            CAPTURE(isLossless);
            CAPTURE(hasAlpha);
            auto const size = PixelSize { 301, 203 };
            auto const pixels = hasAlpha ? sampleWithAlpha(size) : sampleColors(size);
            WebpOptions options;
            options.isLossless = isLossless;
            auto const source = opened(writeWebp(pixels, options));
            REQUIRE(source);
            CHECK(source->typeIdentifier() == "org.webmproject.webp");
            CHECK(source->pixelSize() == size);
            auto const whole = source->decodeWhole();
            REQUIRE(whole);
            CHECK(whole->bitmap.isOpaque != hasAlpha);
            CHECK_FALSE(whole->wasReduced);
            CHECK(meanDifference(whole->bitmap, pixels) < (isLossless ? 1 : 6));
            auto const small = source->decode(60);
            REQUIRE(small);
            CHECK(small->wasReduced);
            CHECK(small->bitmap.size == PixelSize { 60, 40 });
            CHECK(meanDifference(small->bitmap, pixels) < 6);
        }
    }
}

TEST_CASE("the EXIF chunk of a WebP gives orientation and thumbnail")
{
    WebpOptions options;
    ExifOptions exif;
    exif.orientation = 6;
    exif.thumbnail = writeJpeg(sampleColors({ 64, 32 }));
    options.exif = exifBlock(exif);
    auto const source = opened(writeWebp(sampleColors({ 128, 64 }), options));
    REQUIRE(source);
    CHECK(source->orientation() == 6);
    CHECK(source->previews() == std::vector { PixelSize { 32, 64 } });
    auto const image = source->decode(128);
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 64, 128 });
    CHECK(pixelAt(image->bitmap, 60, 3)[0] > 150);
}

TEST_CASE("the first frame of an animated WebP lies on its canvas")
{
    WebpOptions options;
    options.isLossless = true;
    options.canvas = { 100, 80 };
    options.frameX = 20;
    options.frameY = 10;
    options.frames = { sampleColors({ 100, 80 }), sampleColors({ 100, 80 }) };
    auto const source = opened(writeWebp(RgbaPixels::filled({ 40, 30 }, 0xFF0000FF), options));
    REQUIRE(source);
    CHECK(source->frameCount() == 3);
    CHECK(source->pixelSize() == PixelSize { 100, 80 });
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 100, 80 });
    CHECK(pixelAt(image->bitmap, 19, 10)[3] == 0);
    CHECK(pixelAt(image->bitmap, 20, 10)[2] == 255);
    CHECK(pixelAt(image->bitmap, 59, 39)[3] == 255);
    CHECK(pixelAt(image->bitmap, 60, 39)[3] == 0);
    auto const small = source->decode(50);
    REQUIRE(small);
    CHECK(small->bitmap.size == PixelSize { 50, 40 });
}

TEST_CASE("of a cut WebP the rows that are there are shown")
{
    auto pixels = sampleColors({ 300, 300 });
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i) {
        if (i % 4 != 3)
            pixels.rgba[i] = static_cast<std::uint8_t>(pixels.rgba[i] ^ (i * 2654435761U >> 28));
    }
    auto file = writeWebp(pixels);
    file.resize(file.size() / 2);
    auto const source = opened(std::move(file));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 30, 3)[3] == 255);
    CHECK(pixelAt(image->bitmap, 30, 297)[3] == 0);
}
