#include "codecs/CodecSupport.h"
#include "codecs/ColorConversion.h"
#include "support/PlainWriters.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

constexpr PixelSize size { 75, 41 };
using Color = Jp2Options::Color;

} // namespace

TEST_CASE("JPEG 2000 pictures come out with and without boxes, in 8 to 16 bits")
{
    for (auto const isCodestream : { false, true }) {
        for (auto const bits : { 8, 12, 16 }) {
            CAPTURE(isCodestream);
            CAPTURE(bits);
            auto const source
                = opened(writeJp2(sampleColors(size), { Color::rgb, isCodestream, bits, 1, {} }));
            REQUIRE(source);
            CHECK(source->typeIdentifier() == "public.jpeg-2000");
            CHECK(source->pixelSize() == size);
            auto const image = source->decodeWhole();
            REQUIRE(image);
            CHECK(image->bitmap.size == size);
            CHECK(image->bitmap.isOpaque);
            CHECK_FALSE(image->wasReduced);
            CHECK(meanDifference(image->bitmap, sampleColors(size)) <= 1);
        }
    }
}

TEST_CASE("a small JPEG 2000 picture is read at a coarser resolution")
{
    auto const pixels = sampleColors({ 400, 300 });
    auto const source = opened(writeJp2(pixels));
    REQUIRE(source);
    for (auto const side : { 390, 200, 90, 20 }) {
        CAPTURE(side);
        auto const image = source->decode(side);
        REQUIRE(image);
        CHECK(image->bitmap.size == PixelSize { side, (side * 3 + 2) / 4 });
        CHECK(image->wasReduced == (side <= 200));
        CHECK(meanDifference(image->bitmap, pixels) <= 6);
    }
}

TEST_CASE("alpha, grey and subsampled colours of JPEG 2000 come out")
{
    auto const clear = opened(writeJp2(sampleWithAlpha(size), { Color::rgba, false, 8, 1, {} }));
    REQUIRE(clear);
    auto const withAlpha = clear->decodeWhole();
    REQUIRE(withAlpha);
    CHECK_FALSE(withAlpha->bitmap.isOpaque);
    CHECK(meanDifference(withAlpha->bitmap, sampleWithAlpha(size)) <= 2);

    for (auto const step : { 1, 2 }) {
        CAPTURE(step);
        auto const source
            = opened(writeJp2(sampleColors(size), { Color::ycc, false, 8, step, {} }));
        REQUIRE(source);
        auto const image = source->decodeWhole();
        REQUIRE(image);
        CHECK(image->bitmap.size == size);
        CHECK(meanDifference(image->bitmap, sampleColors(size)) <= 4);
    }

    auto const grey = opened(writeJp2(sampleColors(size), { Color::grey, false, 8, 1, {} }));
    REQUIRE(grey);
    auto const image = grey->decodeWhole();
    REQUIRE(image);
    auto const* pixel = pixelAt(image->bitmap, 70, 20);
    CHECK(pixel[0] == pixel[1]);
    CHECK(pixel[1] == pixel[2]);
    CHECK(std::abs(int(pixel[0]) - int((230 * 299 + 137 * 587 + 40 * 114) / 1000)) <= 4);
}

TEST_CASE("the profile of a JPEG 2000 picture counts")
{
    constexpr Chromaticities srgb { { 0.3127, 0.3290 }, { 0.64, 0.33 }, { 0.30, 0.60 },
        { 0.15, 0.06 } };
    auto const pixels = RgbaPixels::filled({ 16, 16 }, 0x808080FF);
    auto const source
        = opened(writeJp2(pixels, { Color::rgb, false, 8, 1, makeProfile(srgb, 1.0) }));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(std::abs(pixelAt(image->bitmap, 8, 8)[1] - 188) <= 2); // 0.502 of the light
}

TEST_CASE("a cut or broken JPEG 2000 file shows what is left, or nothing")
{
    auto const file = writeJp2(sampleColors({ 200, 150 }));
    for (std::size_t part = 0; part < 16; ++part) {
        CAPTURE(part);
        auto cut = file;
        cut.resize(file.size() * part / 16);
        if (auto const source = opened(std::move(cut))) {
            auto const image = source->decode(50);
            CHECK((!image || image->bitmap.size == PixelSize { 50, 38 }));
        }
    }
    unsigned seed = 11;
    for (int round = 0; round < 300; ++round) {
        auto broken = file;
        for (int i = 0; i < 4; ++i) {
            seed = seed * 1664525 + 1013904223;
            broken[(seed >> 8) % broken.size()] ^= static_cast<std::uint8_t>(1U << (seed & 7));
        }
        if (auto const source = opened(std::move(broken)))
            static_cast<void>(source->decode(50));
    }
}
