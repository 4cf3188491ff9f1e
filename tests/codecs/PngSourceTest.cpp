#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("PNGs of every kind come out with their size and colours")
{
    using Kind = PngOptions::Kind;
    auto const size = PixelSize { 95, 61 };
    PngOptions options;
    auto pixels = sampleWithAlpha(size);
    double tolerance = 1;
    auto isOpaque = false;
    auto const opaque = [&] {
        pixels = sampleColors(size);
        isOpaque = true;
    };
    SUBCASE("RGBA") { }
    SUBCASE("RGBA of 16 bits")
    {
        options.kind = Kind::rgba16;
    }
    SUBCASE("RGB")
    {
        options.kind = Kind::rgb8;
        opaque();
    }
    SUBCASE("RGB of 16 bits")
    {
        options.kind = Kind::rgb16;
        opaque();
    }
    SUBCASE("palette")
    {
        options.kind = Kind::palette;
        opaque();
        tolerance = 20;
    }
    SUBCASE("RGB with a transparent colour")
    {
        options.kind = Kind::rgbKey;
        opaque();
    }
    for (auto const isInterlaced : { false, true }) {
        options.isInterlaced = isInterlaced;
        auto const source = opened(writePng(pixels, options));
        REQUIRE(source);
        CHECK(source->typeIdentifier() == "public.png");
        CHECK(source->pixelSize() == size);
        CHECK(source->frameCount() == 1);
        auto const whole = source->decodeWhole();
        REQUIRE(whole);
        CHECK(whole->bitmap.size == size);
        CHECK(whole->bitmap.isOpaque == isOpaque);
        CHECK(whole->isIndexed == (options.kind == Kind::palette));
        CHECK(meanDifference(whole->bitmap, pixels) <= tolerance);
        auto const small = source->decode(40);
        REQUIRE(small);
        CHECK(small->bitmap.size == PixelSize { 40, 26 });
        CHECK(meanDifference(small->bitmap, pixels) <= tolerance + 4);
    }
}

TEST_CASE("grey PNGs come out with three equal channels")
{
    using Kind = PngOptions::Kind;
    for (auto const kind : { Kind::grey1, Kind::grey8, Kind::grey16, Kind::greyAlpha8 }) {
        PngOptions options;
        options.kind = kind;
        auto const source = opened(writePng(sampleColors({ 40, 40 }), options));
        REQUIRE(source);
        auto const image = source->decodeWhole();
        REQUIRE(image);
        CHECK(image->bitmap.isOpaque);
        auto const* at = pixelAt(image->bitmap, 35, 35);
        CHECK(at[0] == at[1]);
        CHECK(at[1] == at[2]);
        CHECK(at[0] > 120);
    }
}

TEST_CASE("a transparent palette entry is a hole")
{
    PngOptions options;
    options.kind = PngOptions::Kind::paletteAlpha;
    auto const source = opened(writePng(sampleWithAlpha({ 40, 40 }), options));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK_FALSE(image->bitmap.isOpaque);
    CHECK(pixelAt(image->bitmap, 38, 2)[3] == 0);
    CHECK(pixelAt(image->bitmap, 38, 2)[0] == 0);
    CHECK(pixelAt(image->bitmap, 5, 5)[3] == 255);
}

TEST_CASE("the frames of an animated PNG are counted and its default image is shown")
{
    auto const first = sampleColors({ 32, 24 });
    PngOptions options;
    options.frames = { RgbaPixels::filled({ 32, 24 }, 0xFF0000FF),
        RgbaPixels::filled({ 32, 24 }, 0x00FF00FF) };
    auto const source = opened(writePng(first, options));
    REQUIRE(source);
    CHECK(source->frameCount() == 3);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(meanDifference(image->bitmap, first) < 1);
}

TEST_CASE("the EXIF chunk of a PNG gives orientation and thumbnail")
{
    PngOptions options;
    ExifOptions exif;
    exif.orientation = 8;
    exif.thumbnail = writeJpeg(sampleColors({ 16, 8 }));
    options.exif = exifBlock(exif);
    auto const source = opened(writePng(sampleColors({ 64, 32 }), options));
    REQUIRE(source);
    CHECK(source->orientation() == 8);
    CHECK(source->previews() == std::vector { PixelSize { 8, 16 } });
    auto const image = source->decode(64);
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 32, 64 });
    CHECK(pixelAt(image->bitmap, 3, 60)[0] > 150);
}

TEST_CASE("a gamma without primaries changes nothing")
{
    PngOptions options;
    options.kind = PngOptions::Kind::rgb8;
    options.gamma = 1.0;
    auto const pixels = sampleColors({ 20, 20 });
    auto const source = opened(writePng(pixels, options));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(meanDifference(image->bitmap, pixels) < 1);
}

TEST_CASE("of a cut PNG the rows that are there are shown, the rest is transparent")
{
    auto pixels = sampleColors({ 120, 120 });
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i) {
        if (i % 4 != 3)
            pixels.rgba[i] = static_cast<std::uint8_t>(pixels.rgba[i] ^ (i * 2654435761U >> 28));
    }
    auto file = writePng(pixels);
    file.resize(file.size() / 2);
    auto const source = opened(std::move(file));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK_FALSE(image->bitmap.isOpaque);
    CHECK(pixelAt(image->bitmap, 60, 3)[3] == 255);
    CHECK(pixelAt(image->bitmap, 60, 118)[3] == 0);
}

TEST_CASE("a PNG that promises absurd sides is refused")
{
    auto file = writePng(sampleColors({ 8, 8 }));
    for (std::size_t i = 16; i < 24; ++i)
        file[i] = 0x7F;
    CHECK_FALSE(opened(std::move(file)));
}
