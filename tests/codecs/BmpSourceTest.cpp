#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("BMPs of every kind come out with their size and colours")
{
    using Kind = BmpOptions::Kind;
    struct Case {
        Kind kind;
        double tolerance;
    };
    auto const size = PixelSize { 75, 41 };
    for (auto const& it : { Case { Kind::rgb24, 0.01 }, Case { Kind::rgbx32, 0.01 },
             Case { Kind::rgba32, 1 }, Case { Kind::rgb555, 5 }, Case { Kind::rgb565, 4 },
             Case { Kind::palette8, 20 }, Case { Kind::rle8, 20 }, Case { Kind::os2palette8, 20 },
             Case { Kind::palette4, 60 }, Case { Kind::rle4, 60 } }) {
        auto const kind = it.kind;
        for (auto const isTopDown : { false, true }) {
            if (isTopDown && (kind == Kind::os2palette8))
                continue;
            CAPTURE(int(kind));
            CAPTURE(isTopDown);
            auto const hasAlpha = kind == Kind::rgba32;
            auto const pixels = hasAlpha ? sampleWithAlpha(size) : sampleColors(size);
            BmpOptions options { kind, isTopDown };
            auto const source = opened(writeBmp(pixels, options));
            REQUIRE(source);
            CHECK(source->typeIdentifier() == "com.microsoft.bmp");
            CHECK(source->pixelSize() == size);
            auto const whole = source->decodeWhole();
            REQUIRE(whole);
            CHECK(whole->bitmap.size == size);
            CHECK(whole->bitmap.isOpaque != hasAlpha);
            CHECK(meanDifference(whole->bitmap, pixels) <= it.tolerance);
            auto const small = source->decode(30);
            REQUIRE(small);
            CHECK(small->bitmap.size == PixelSize { 30, 16 });
        }
    }
}

TEST_CASE("run lengths and plain indices give the same picture")
{
    using Kind = BmpOptions::Kind;
    auto const pixels = sampleColors({ 75, 41 });
    for (auto const& [runs, plain] :
        { std::pair { Kind::rle8, Kind::palette8 }, std::pair { Kind::rle4, Kind::palette4 } }) {
        auto const left = opened(writeBmp(pixels, { runs, false }))->decodeWhole();
        auto const right = opened(writeBmp(pixels, { plain, false }))->decodeWhole();
        REQUIRE(left);
        REQUIRE(right);
        for (int y = 0; y < 41; ++y)
            CHECK(std::equal(
                left->bitmap.row(y), left->bitmap.row(y) + 75 * 4, right->bitmap.row(y)));
    }
}

TEST_CASE("a BMP of one bit is black and white")
{
    auto const source
        = opened(writeBmp(sampleColors({ 33, 20 }), { BmpOptions::Kind::mono, false }));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(image->isIndexed);
    CHECK(pixelAt(image->bitmap, 1, 1)[0] == 0);
    CHECK(pixelAt(image->bitmap, 32, 19)[0] == 255);
}

TEST_CASE("rows that a cut BMP lacks are transparent")
{
    auto file = writeBmp(sampleColors({ 40, 40 }));
    file.resize(file.size() - 40 * 3 * 10);
    auto const source = opened(std::move(file));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 5, 5)[3] == 0);
    CHECK(pixelAt(image->bitmap, 5, 39)[3] == 255);
}

TEST_CASE("a BMP with absurd sides is refused before memory is taken")
{
    auto file = writeBmp(sampleColors({ 8, 8 }));
    for (std::size_t i = 18; i < 26; ++i)
        file[i] = i == 20 || i == 21 || i == 24 || i == 25 ? 0 : 0xFF;
    auto const source = opened(std::move(file));
    CHECK((!source || !source->decode(100)));
}

TEST_CASE("a BMP whose height is the most negative number is refused")
{
    auto file = writeBmp(sampleColors({ 8, 8 }));
    file[22] = file[23] = file[24] = 0;
    file[25] = 0x80;
    CHECK_FALSE(opened(std::move(file)));
}
