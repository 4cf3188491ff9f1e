#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

GifFrame frameOf(RgbaPixels pixels, int x = 0, int y = 0)
{
    GifFrame frame;
    frame.pixels = std::move(pixels);
    frame.x = x;
    frame.y = y;
    return frame;
}

} // namespace

TEST_CASE("a GIF comes out with its size and colours, interlaced or not")
{
    auto const pixels = sampleColors({ 70, 53 });
    for (auto const isInterlaced : { false, true }) {
        auto frame = frameOf(pixels);
        frame.isInterlaced = isInterlaced;
        auto const source = opened(writeGif({ 70, 53 }, { frame }));
        REQUIRE(source);
        CHECK(source->typeIdentifier() == "com.compuserve.gif");
        CHECK(source->frameCount() == 1);
        CHECK(source->pixelSize() == PixelSize { 70, 53 });
        auto const whole = source->decodeWhole();
        REQUIRE(whole);
        CHECK(whole->isIndexed);
        CHECK(whole->bitmap.isOpaque);
        CHECK(meanDifference(whole->bitmap, pixels) < 20);
        auto const small = source->decode(35);
        REQUIRE(small);
        CHECK(small->bitmap.size == PixelSize { 35, 27 });
        CHECK(meanDifference(small->bitmap, pixels) < 22);
    }
}

TEST_CASE("the first frame of a GIF lies on a transparent canvas")
{
    auto const source = opened(
        writeGif({ 40, 30 }, { frameOf(RgbaPixels::filled({ 10, 10 }, 0xFF0000FF), 20, 15) }));
    REQUIRE(source);
    CHECK(source->pixelSize() == PixelSize { 40, 30 });
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK_FALSE(image->bitmap.isOpaque);
    CHECK(pixelAt(image->bitmap, 19, 15)[3] == 0);
    CHECK(pixelAt(image->bitmap, 20, 14)[3] == 0);
    CHECK(pixelAt(image->bitmap, 20, 15)[2] == 255);
    CHECK(pixelAt(image->bitmap, 29, 24)[3] == 255);
    CHECK(pixelAt(image->bitmap, 30, 24)[3] == 0);
}

TEST_CASE("the transparent colour of a GIF is a hole")
{
    auto const source = opened(writeGif({ 40, 40 }, { frameOf(sampleWithAlpha({ 40, 40 })) }));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 38, 3)[3] == 0);
    CHECK(pixelAt(image->bitmap, 3, 3)[3] == 255);
}

TEST_CASE("a frame that hangs over the edge of the canvas is cut")
{
    auto const source = opened(
        writeGif({ 20, 20 }, { frameOf(RgbaPixels::filled({ 30, 30 }, 0x00FF00FF), 10, 10) }));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 20, 20 });
    CHECK(pixelAt(image->bitmap, 19, 19)[1] == 255);
    CHECK(pixelAt(image->bitmap, 9, 9)[3] == 0);
}

TEST_CASE("the frames of a GIF are counted by its blocks")
{
    std::vector<GifFrame> frames;
    for (int i = 0; i < 7; ++i)
        frames.push_back(frameOf(sampleColors({ 50, 50 })));
    auto file = writeGif({ 50, 50 }, frames);
    auto const source = opened(file);
    REQUIRE(source);
    CHECK(source->frameCount() == 7);
    file.resize(file.size() / 2);
    auto const cut = opened(file);
    REQUIRE(cut);
    CHECK(cut->frameCount() >= 3);
    CHECK(cut->frameCount() <= 5);
}

TEST_CASE("a cut GIF shows its first lines")
{
    auto file = writeGif({ 200, 200 }, { frameOf(sampleColors({ 200, 200 })) });
    file.resize(768 + (file.size() - 768) / 2);
    auto const source = opened(std::move(file));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 10, 5)[3] == 255);
    CHECK(pixelAt(image->bitmap, 10, 195)[3] == 0);
}
