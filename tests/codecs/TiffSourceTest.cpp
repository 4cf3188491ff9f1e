#include "codecs/ByteView.h"
#include "codecs/CodecSupport.h"
#include "support/ByteWriter.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Kind = TiffOptions::Kind;
using Packing = TiffOptions::Packing;

// A second directory that holds a JPEG behind a TIFF of little-endian numbers.
FileBytes withSecondJpeg(FileBytes tiff, FileBytes const& jpeg, unsigned subfileType)
{
    ByteWriter out;
    out.bytes = std::move(tiff);
    out.pad(2);
    auto const number = [&](std::size_t at, int bytes) {
        std::size_t value = 0;
        for (int i = bytes; i-- > 0;)
            value = value << 8 | out.bytes.at(at + static_cast<std::size_t>(i));
        return value;
    };
    auto const first = number(4, 4);
    out.put32(first + 2 + 12 * number(first, 2), out.size());
    auto const field = [&](unsigned tag, std::size_t value) {
        out.u16(tag);
        out.u16(4);
        out.u32(1);
        out.u32(value);
    };
    constexpr unsigned fields = 4;
    out.u16(fields);
    auto const behind = out.size() + fields * 12 + 4;
    field(0x00FE, subfileType);
    field(0x0103, 6);
    field(0x0201, behind);
    field(0x0202, jpeg.size());
    out.u32(0);
    out.raw(jpeg);
    return out.bytes;
}

} // namespace

TEST_CASE("a TIFF's thumbnail is a preview, turned with the picture, and a second page is none")
{
    auto const photo = sampleColors({ 800, 600 });
    auto const small = writeJpeg(sampleColors({ 160, 120 }));
    TiffOptions options;
    options.orientation = 6;
    auto const source = opened(withSecondJpeg(writeTiff(photo, options), small, 1));
    REQUIRE(source);
    REQUIRE(source->previews() == std::vector { PixelSize { 120, 160 } });
    auto const preview = source->decodePreview(0, 512);
    REQUIRE(preview);
    CHECK(preview->bitmap.size == PixelSize { 120, 160 });
    CHECK(source->frameCount() == 1);
    auto const pages = opened(withSecondJpeg(writeTiff(photo), small, 0));
    REQUIRE(pages);
    CHECK(pages->previews().empty());
    auto const other = writeJpeg(sampleColors({ 120, 160 }));
    auto const crooked = opened(withSecondJpeg(writeTiff(photo), other, 1));
    REQUIRE(crooked);
    CHECK(crooked->previews().empty());
}

TEST_CASE("TIFFs of every kind come out with their size and colours")
{
    struct Case {
        Kind kind;
        double tolerance;
    };
    auto const size = PixelSize { 77, 45 };
    for (auto const& it :
        { Case { Kind::rgb8, 0.01 }, Case { Kind::rgba8, 1 }, Case { Kind::rgbaAssociated8, 1 },
            Case { Kind::rgb16, 1 }, Case { Kind::rgbFloat, 12 }, Case { Kind::palette, 20 },
            Case { Kind::cmyk8, 1 }, Case { Kind::ycbcrJpeg, 12 } }) {
        auto const kind = it.kind;
        for (auto const isTiled : { false, true }) {
            for (auto const isBigEndian : { false, true }) {
                CAPTURE(int(kind));
                CAPTURE(isTiled);
                CAPTURE(isBigEndian);
                auto const hasAlpha = kind == Kind::rgba8 || kind == Kind::rgbaAssociated8;
                auto const pixels = hasAlpha ? sampleWithAlpha(size) : sampleColors(size);
                TiffOptions options;
                options.kind = kind;
                options.isTiled = isTiled;
                options.isBigEndian = isBigEndian;
                auto const source = opened(writeTiff(pixels, options));
                REQUIRE(source);
                CHECK(source->typeIdentifier() == "public.tiff");
                CHECK(source->pixelSize() == size);
                CHECK(source->frameCount() == 1);
                auto const whole = source->decodeWhole();
                REQUIRE(whole);
                CHECK(whole->bitmap.size == size);
                CHECK(whole->bitmap.isOpaque != hasAlpha);
                CHECK(whole->isIndexed == (kind == Kind::palette));
                CHECK(meanDifference(whole->bitmap, pixels) <= it.tolerance);
                auto const small = source->decode(30);
                REQUIRE(small);
                CHECK(small->bitmap.size == PixelSize { 30, 18 });
            }
        }
    }
}

TEST_CASE("TIFFs packed in any way give the same picture")
{
    auto const pixels = sampleColors({ 77, 45 });
    for (auto const packing : { Packing::lzw, Packing::deflate, Packing::packBits }) {
        for (auto const isPlanar : { false, true }) {
            TiffOptions options;
            options.packing = packing;
            options.isPlanar = isPlanar;
            auto const source = opened(writeTiff(pixels, options));
            REQUIRE(source);
            auto const image = source->decodeWhole();
            REQUIRE(image);
            CHECK(meanDifference(image->bitmap, pixels) < 0.01);
        }
    }
}

TEST_CASE("grey and fax TIFFs come out with three equal channels")
{
    for (auto const kind : { Kind::grey8, Kind::grey16, Kind::bilevel }) {
        TiffOptions options;
        options.kind = kind;
        if (kind == Kind::bilevel)
            options.packing = Packing::fax4;
        auto const source = opened(writeTiff(sampleColors({ 64, 40 }), options));
        REQUIRE(source);
        auto const image = source->decodeWhole();
        REQUIRE(image);
        auto const* at = pixelAt(image->bitmap, 60, 38);
        CHECK(at[0] == at[1]);
        CHECK(at[1] == at[2]);
        CHECK(at[0] > 150);
        CHECK(pixelAt(image->bitmap, 3, 20)[0] < at[0]);
    }
}

TEST_CASE("the orientation of a TIFF is applied to decodes and kept off the whole picture")
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        CAPTURE(orientation);
        TiffOptions options;
        options.orientation = orientation;
        auto const source = opened(writeTiff(sampleColors({ 60, 40 }), options));
        REQUIRE(source);
        CHECK(source->orientation() == orientation);
        auto const image = source->decode(60);
        REQUIRE(image);
        CHECK(
            image->bitmap.size == (orientation >= 5 ? PixelSize { 40, 60 } : PixelSize { 60, 40 }));
        auto const whole = source->decodeWhole();
        REQUIRE(whole);
        CHECK(whole->bitmap.size == PixelSize { 60, 40 });
        CHECK(pixelAt(whole->bitmap, 2, 2)[0] == 200);
    }
}

TEST_CASE("the pages of a TIFF are counted and the first is shown")
{
    TiffOptions options;
    options.pages = { sampleColors({ 20, 20 }), sampleColors({ 90, 10 }) };
    auto const source = opened(writeTiff(sampleColors({ 30, 20 }), options));
    REQUIRE(source);
    CHECK(source->frameCount() == 3);
    CHECK(source->pixelSize() == PixelSize { 30, 20 });
    CHECK(source->frameCount() == 3);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 30, 20 });
}

TEST_CASE("of a damaged TIFF the strips up to the damage are shown")
{
    auto const pixels = sampleColors({ 64, 64 });
    TiffOptions options;
    options.packing = Packing::deflate;
    auto file = writeTiff(pixels, options);
    // Four strips stand one behind the other, the directory behind them.
    auto const third = file.begin() + 8 + (littleEndian32(file.data() + 4) - 8) / 2;
    std::fill(third + 10, third + 40, std::uint8_t { 0xAA });
    auto const source = opened(std::move(file));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK_FALSE(image->bitmap.isOpaque);
    CHECK(pixelAt(image->bitmap, 3, 3)[3] == 255);
    CHECK(pixelAt(image->bitmap, 3, 62)[3] == 0);
}
