#include "codecs/CodecSupport.h"
#include "codecs/JpegDecoder.h"
#include <cmath>
#include <cstdlib>
#include <doctest/doctest.h>
#include <utility>

using namespace pixelhain;

namespace {

FileBytes thumbnailOf(PixelSize size)
{
    return writeJpeg(sampleColors(size));
}

JpegOptions withThumbnail(FileBytes thumbnail, int orientation = 0)
{
    JpegOptions options;
    ExifOptions exif;
    exif.orientation = orientation;
    exif.thumbnail = std::move(thumbnail);
    options.exif = exifBlock(exif);
    return options;
}

FileBytes letterboxed(PixelSize size, int bar, std::uint32_t barColor)
{
    auto pixels = RgbaPixels::filled(size, barColor);
    auto const inner = sampleColors({ size.width, size.height - 2 * bar });
    for (int y = 0; y < inner.size.height; ++y)
        std::copy_n(inner.at(0, y), size.width * 4, pixels.at(0, y + bar));
    JpegOptions options;
    options.subsampling = JpegOptions::Subsampling::s444;
    return writeJpeg(pixels, options);
}

} // namespace

TEST_CASE("JPEGs of every kind come out with their size and colours")
{
    auto const pixels = sampleColors({ 203, 121 });
    JpegOptions options;
    SUBCASE("baseline 4:2:0") { }
    SUBCASE("4:2:2")
    {
        options.subsampling = JpegOptions::Subsampling::s422;
    }
    SUBCASE("4:4:4")
    {
        options.subsampling = JpegOptions::Subsampling::s444;
    }
    SUBCASE("RGB")
    {
        options.color = JpegOptions::Color::rgb;
    }
    SUBCASE("CMYK")
    {
        options.color = JpegOptions::Color::cmyk;
    }
    SUBCASE("YCCK")
    {
        options.color = JpegOptions::Color::ycck;
    }
    SUBCASE("progressive")
    {
        options.isProgressive = true;
    }
    SUBCASE("arithmetic")
    {
        options.isArithmetic = true;
    }
    SUBCASE("one scan for each component")
    {
        options.isInterleaved = false;
    }
    SUBCASE("restart markers")
    {
        options.restartRows = 1;
    }
    auto const source = opened(writeJpeg(pixels, options));
    REQUIRE(source);
    CHECK(source->typeIdentifier() == "public.jpeg");
    CHECK(source->frameCount() == 1);
    CHECK(source->pixelSize() == PixelSize { 203, 121 });
    CHECK(source->previews().empty());
    auto const whole = source->decodeWhole();
    REQUIRE(whole);
    CHECK(whole->bitmap.size == PixelSize { 203, 121 });
    CHECK(whole->bitmap.isOpaque);
    CHECK_FALSE(whole->wasReduced);
    CHECK(meanDifference(whole->bitmap, pixels) < 6);
    auto const small = source->decode(64);
    REQUIRE(small);
    CHECK(small->bitmap.size == PixelSize { 64, 38 });
    CHECK(meanDifference(small->bitmap, pixels) < 6);
}

TEST_CASE("a grey JPEG comes out with three equal channels")
{
    JpegOptions options;
    options.color = JpegOptions::Color::grey;
    auto const source = opened(writeJpeg(sampleColors({ 64, 48 }), options));
    REQUIRE(source);
    auto const image = source->decode(32);
    REQUIRE(image);
    auto const* at = pixelAt(image->bitmap, 20, 10);
    CHECK(at[0] == at[1]);
    CHECK(at[1] == at[2]);
    CHECK(at[3] == 255);
}

TEST_CASE("the DCT scale is the smallest quick one that leaves enough for the filter")
{
    CHECK(dctEighths({ 6000, 4000 }, 384) == 1);
    CHECK(dctEighths({ 4032, 3024 }, 384) == 1);
    CHECK(dctEighths({ 3000, 4000 }, 384) == 1);
    CHECK(dctEighths({ 3992, 3000 }, 384) == 2);
    CHECK(dctEighths({ 6000, 4000 }, 1920) == 4);
    CHECK(dctEighths({ 3024, 4032 }, 640) == 2);
    CHECK(dctEighths({ 3024, 4032 }, 680) == 4);
    CHECK(dctEighths({ 4032, 3024 }, 1920) == 8);
    CHECK(dctEighths({ 6000, 4000 }, 2560) == 8);
    CHECK(dctEighths({ 700, 500 }, 384) == 8);
    CHECK(dctEighths({ 6000, 4000 }, 0) == 8);
}

TEST_CASE("a JPEG whose reduced rows end in a part of a pixel keeps everything in its place")
{
    // Brightness grows evenly to the right and downwards, in steps that survive the coding.
    constexpr int side = 105;
    auto const levelAt = [](double x, double y) { return 20 + 1.1 * (x + y); };
    auto pixels = RgbaPixels::filled({ side, side }, 0x000000FF);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            std::fill_n(pixels.at(x, y), 3,
                static_cast<std::uint8_t>(std::lround(levelAt(x + 0.5, y + 0.5))));
    JpegOptions options;
    options.quality = 100;
    auto const file = writeJpeg(pixels, options);
    auto const source = opened(file);
    REQUIRE(source);
    for (auto const& expected : { std::pair { 10, 1 }, { 17, 2 }, { 30, 4 }, { 90, 8 } }) {
        int const wanted = expected.first;
        CAPTURE(wanted);
        REQUIRE(dctEighths({ side, side }, wanted) == expected.second);
        // The library's picture, and ours of an eighth.
        auto const ours = source->decode(wanted);
        auto const theirs = decodeJpegByLibrary(SpanBytes(file), wanted, {});
        auto const step = double { side } / wanted;
        for (auto const* image : { &ours, &theirs }) {
            REQUIRE(*image);
            REQUIRE((*image)->bitmap.size == PixelSize { wanted, wanted });
            for (int const x : { 2, wanted - 3 })
                for (int const y : { 2, wanted - 3 })
                    CHECK(std::abs(pixelAt((*image)->bitmap, x, y)[1]
                              - levelAt((x + 0.5) * step, (y + 0.5) * step))
                        <= 1);
        }
    }
}

TEST_CASE("a large JPEG is read at a reduced scale and says so")
{
    auto const source = opened(writeJpeg(sampleColors({ 1600, 1000 })));
    REQUIRE(source);
    auto const image = source->decode(100);
    REQUIRE(image);
    CHECK(image->wasReduced);
    CHECK(image->bitmap.size == PixelSize { 100, 63 });
}

TEST_CASE("a JPEG is never enlarged")
{
    auto const source = opened(writeJpeg(sampleColors({ 80, 60 })));
    REQUIRE(source);
    auto const image = source->decode(512);
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 80, 60 });
    CHECK_FALSE(image->wasReduced);
}

TEST_CASE("every EXIF orientation is applied to decodes and kept off the whole picture")
{
    auto const pixels = sampleColors({ 96, 64 });
    for (int orientation = 1; orientation <= 8; ++orientation) {
        CAPTURE(orientation);
        JpegOptions options;
        ExifOptions exif;
        exif.orientation = orientation;
        exif.isBigEndian = orientation % 2 == 0;
        options.exif = exifBlock(exif);
        auto const source = opened(writeJpeg(pixels, options));
        REQUIRE(source);
        CHECK(source->orientation() == orientation);
        CHECK(source->pixelSize() == PixelSize { 96, 64 });
        auto const image = source->decode(48);
        REQUIRE(image);
        auto const isTurned = orientation >= 5;
        CHECK(image->bitmap.size == (isTurned ? PixelSize { 32, 48 } : PixelSize { 48, 32 }));
        // The stored top left corner is blue; where it shows tells the orientation.
        auto const isRight
            = orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7;
        auto const isBottom
            = orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8;
        auto const size = image->bitmap.size;
        auto const* corner
            = pixelAt(image->bitmap, isRight ? size.width - 3 : 2, isBottom ? size.height - 3 : 2);
        CHECK(corner[0] > 150);
        auto const whole = source->decodeWhole();
        REQUIRE(whole);
        CHECK(whole->bitmap.size == PixelSize { 96, 64 });
    }
}

TEST_CASE("an orientation outside 1 to 8 counts as 1")
{
    JpegOptions options;
    ExifOptions exif;
    exif.orientation = 9;
    options.exif = exifBlock(exif);
    auto const source = opened(writeJpeg(sampleColors({ 32, 32 }), options));
    REQUIRE(source);
    CHECK(source->orientation() == 1);
}

TEST_CASE("the EXIF thumbnail is a preview, upright like the picture")
{
    auto const source = opened(
        writeJpeg(sampleColors({ 640, 480 }), withThumbnail(thumbnailOf({ 160, 120 }), 6)));
    REQUIRE(source);
    REQUIRE(source->previews() == std::vector { PixelSize { 120, 160 } });
    auto const preview = source->decodePreview(0, 512);
    REQUIRE(preview);
    CHECK(preview->bitmap.size == PixelSize { 120, 160 });
    CHECK(pixelAt(preview->bitmap, 115, 4)[0] > 150);
    auto const small = source->decodePreview(0, 80);
    REQUIRE(small);
    CHECK(small->bitmap.size == PixelSize { 60, 80 });
    CHECK_FALSE(source->decodePreview(1, 80));
}

TEST_CASE("previews are listed by size, and only those that show the whole picture")
{
    auto options = withThumbnail(thumbnailOf({ 160, 120 }));
    options.preview = thumbnailOf({ 400, 300 });
    options.gainMap = thumbnailOf({ 320, 240 });
    auto const source = opened(writeJpeg(sampleColors({ 800, 600 }), options));
    REQUIRE(source);
    CHECK(source->previews() == std::vector { PixelSize { 160, 120 }, PixelSize { 400, 300 } });
    CHECK(source->frameCount() == 1);
    auto const preview = source->decodePreview(1, 300);
    REQUIRE(preview);
    CHECK(preview->bitmap.size == PixelSize { 300, 225 });
}

TEST_CASE("a second view is a picture of its own, no preview")
{
    JpegOptions options;
    options.secondView = thumbnailOf({ 400, 300 });
    auto const source = opened(writeJpeg(sampleColors({ 400, 300 }), options));
    REQUIRE(source);
    CHECK(source->frameCount() == 2);
    CHECK(source->previews().empty());
}

TEST_CASE("black bars of a thumbnail are cut off")
{
    auto const source = opened(writeJpeg(
        sampleColors({ 900, 600 }), withThumbnail(letterboxed({ 160, 120 }, 7, 0x000000FF))));
    REQUIRE(source);
    REQUIRE(source->previews() == std::vector { PixelSize { 160, 106 } });
    auto const preview = source->decodePreview(0, 160);
    REQUIRE(preview);
    CHECK(preview->bitmap.size == PixelSize { 160, 106 });
    CHECK(meanDifference(preview->bitmap, sampleColors({ 160, 106 })) < 5);
}

TEST_CASE("a thumbnail of another shape without black bars is no preview")
{
    auto const source = opened(writeJpeg(
        sampleColors({ 900, 600 }), withThumbnail(letterboxed({ 160, 120 }, 7, 0xA0A0A0FF))));
    REQUIRE(source);
    CHECK(source->previews().empty());
}

TEST_CASE("a preview behind the end of the file does not count")
{
    JpegOptions options;
    options.preview = thumbnailOf({ 400, 300 });
    auto file = writeJpeg(sampleColors({ 800, 600 }), options);
    file.resize(file.size() - 100);
    auto const source = opened(std::move(file));
    REQUIRE(source);
    CHECK(source->previews().empty());
    CHECK(source->decode(100));
}

TEST_CASE("a header and its preview are read without the rest of the file")
{
    auto big = sampleColors({ 3000, 2000 });
    for (std::size_t i = 0; i < big.rgba.size(); ++i)
        big.rgba[i] = static_cast<std::uint8_t>(big.rgba[i] ^ (i * 2654435761U >> 27));
    auto options = withThumbnail(thumbnailOf({ 240, 160 }));
    auto const file = writeJpeg(big, options);
    REQUIRE(file.size() > 1'000'000);
    MemoryBytes::Reads reads;
    auto const source = opened(file, &reads);
    REQUIRE(source);
    CHECK(source->pixelSize() == PixelSize { 3000, 2000 });
    CHECK(source->decodePreview(0, 240));
    CHECK(reads.bytes <= 65536 + 64);
    CHECK(reads.calls <= 4);
}

TEST_CASE("a cut JPEG shows what is there")
{
    auto const pixels = sampleColors({ 200, 200 });
    for (auto const isProgressive : { false, true }) {
        JpegOptions options;
        options.isProgressive = isProgressive;
        auto file = writeJpeg(pixels, options);
        file.resize(file.size() * 3 / 4);
        auto const source = opened(std::move(file));
        REQUIRE(source);
        auto const image = source->decode(200);
        REQUIRE(image);
        CHECK(image->bitmap.size == PixelSize { 200, 200 });
        CHECK(pixelAt(image->bitmap, 5, 5)[0] > 150);
    }
}

TEST_CASE("a progressive JPEG at an eighth of its size is read only up to the blocks' means")
{
    auto pixels = sampleColors({ 1600, 1200 });
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i) {
        if (i % 4 != 3)
            pixels.rgba[i] = static_cast<std::uint8_t>(pixels.rgba[i] ^ (i * 40503 >> 8 & 63));
    }
    JpegOptions options;
    auto const baseline = opened(writeJpeg(pixels, options))->decode(100);
    options.isProgressive = true;
    auto file = writeJpeg(pixels, options);
    auto const length = file.size();
    MemoryBytes::Reads reads;
    auto const source = opened(std::move(file), &reads);
    REQUIRE(source);
    auto const image = source->decode(100);
    REQUIRE(image);
    REQUIRE(baseline);
    CHECK(meanDifference(image->bitmap, baseline->bitmap) < 1);
    CHECK(reads.bytes < length / 2);
}

TEST_CASE("a progressive JPEG of low quality is read until its means are exact")
{
    auto const pixels = sampleColors({ 1600, 1200 });
    JpegOptions options;
    options.quality = 20;
    auto const plain = opened(writeJpeg(pixels, options))->decode(100);
    options.isProgressive = true;
    auto const progressive = opened(writeJpeg(pixels, options))->decode(100);
    REQUIRE(plain);
    REQUIRE(progressive);
    CHECK(meanDifference(plain->bitmap, progressive->bitmap) < 0.5);
}
