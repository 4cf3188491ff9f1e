#include "codecs/AnimationSupport.h"
#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

constexpr PixelSize canvas { 8, 8 };

GifFrame filled(std::uint32_t color, int x = 0, int y = 0, PixelSize size = canvas)
{
    return filledFrame<GifFrame>(color, x, y, size);
}

// A red ground, a green square that is disposed of like that, and a blue dot far from it.
std::vector<AnimationFrame> disposed(int disposal)
{
    auto square = filled(green, 2, 2, { 4, 4 });
    square.disposal = disposal;
    auto frames = framesIn(writeGif(canvas, { filled(red), square, filled(blue, 0, 0, { 1, 1 }) }));
    REQUIRE(frames.size() == 3);
    CHECK(colorAt(frames[1].bitmap, 3, 3) == green);
    CHECK(colorAt(frames[1].bitmap, 6, 6) == red);
    CHECK(colorAt(frames[2].bitmap, 0, 0) == blue);
    CHECK(colorAt(frames[2].bitmap, 7, 7) == red);
    return frames;
}

} // namespace

TEST_CASE("a frame of a GIF stays below the next one")
{
    for (auto const disposal : { 0, 1, 5, 7 }) {
        CAPTURE(disposal);
        CHECK(colorAt(disposed(disposal)[2].bitmap, 3, 3) == green);
    }
}

TEST_CASE("a frame of a GIF leaves a hole, whatever the background is")
{
    auto const frames = disposed(2);
    CHECK(colorAt(frames[2].bitmap, 3, 3) == nothing);
    CHECK(colorAt(frames[2].bitmap, 1, 1) == red);
    CHECK(frames[1].bitmap.isOpaque);
    CHECK_FALSE(frames[2].bitmap.isOpaque);
}

TEST_CASE("a frame of a GIF gives way to what was there before")
{
    for (auto const disposal : { 3, 4 }) {
        CAPTURE(disposal);
        CHECK(colorAt(disposed(disposal)[2].bitmap, 3, 3) == red);
    }
}

TEST_CASE("two frames in a row that give way bring back what was there before both")
{
    auto first = filled(green, 0, 0, { 4, 8 });
    first.disposal = 3;
    auto second = filled(blue, 2, 0, { 4, 8 });
    second.disposal = 3;
    auto const frames
        = framesIn(writeGif(canvas, { filled(red), first, second, filled(green, 7, 7, { 1, 1 }) }));
    REQUIRE(frames.size() == 4);
    CHECK(colorAt(frames[2].bitmap, 0, 0) == red);
    CHECK(colorAt(frames[2].bitmap, 3, 0) == blue);
    CHECK(colorAt(frames[3].bitmap, 3, 0) == red);
}

TEST_CASE("through the holes of a frame of a GIF the one below is seen")
{
    auto dotted = filled(green);
    dotted.pixels.at(3, 5)[3] = 0;
    auto const frames = framesIn(writeGif(canvas, { filled(red), dotted }));
    REQUIRE(frames.size() == 2);
    CHECK(colorAt(frames[1].bitmap, 3, 5) == red);
    CHECK(colorAt(frames[1].bitmap, 3, 4) == green);
}

TEST_CASE("frames with colours of their own, interlaced or not, look the same")
{
    auto const pixels = sampleColors({ 40, 30 });
    std::vector<GifFrame> frames(4);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        frames[i].pixels = pixels;
        frames[i].hasOwnColors = (i & 1) != 0;
        frames[i].isInterlaced = (i & 2) != 0;
    }
    auto const shown = framesIn(writeGif({ 40, 30 }, frames));
    REQUIRE(shown.size() == 4);
    CHECK(meanDifference(shown[0].bitmap, pixels) < 20);
    for (auto const& frame : shown)
        CHECK(meanDifference(frame.bitmap, shown[0].bitmap) == 0);
}

TEST_CASE("frames of a GIF larger than the canvas, beside it and across its edges are cut")
{
    auto const frames = framesIn(writeGif(canvas,
        { filled(red, 0, 0, { 20, 30 }), filled(green, 6, 6, { 10, 10 }),
            filled(blue, 8, 0, { 5, 5 }), filled(blue, 100, 200, { 3, 3 }),
            filled(blue, 0, 7, { 3, 3 }) }));
    REQUIRE(frames.size() == 5);
    for (auto const& frame : frames)
        CHECK(frame.bitmap.size == canvas);
    CHECK(colorAt(frames[0].bitmap, 7, 7) == red);
    CHECK(colorAt(frames[1].bitmap, 7, 7) == green);
    CHECK(colorAt(frames[1].bitmap, 5, 5) == red);
    CHECK(meanDifference(frames[3].bitmap, frames[1].bitmap) == 0);
    CHECK(colorAt(frames[4].bitmap, 2, 7) == blue);
    CHECK(colorAt(frames[4].bitmap, 2, 6) == red);
}

TEST_CASE("the delays of a GIF are hundredths of a second, and next to none are a tenth")
{
    std::vector<GifFrame> frames(5, filled(red));
    frames[0].delay = 0;
    frames[1].delay = 1;
    frames[2].delay = 2;
    frames[3].delay = 50;
    frames[4].delay = 65535;
    auto const shown = framesIn(writeGif(canvas, frames));
    REQUIRE(shown.size() == 5);
    CHECK(shown[0].delay == 100ms);
    CHECK(shown[1].delay == 100ms);
    CHECK(shown[2].delay == 20ms);
    CHECK(shown[3].delay == 500ms);
    CHECK(shown[4].delay == 655350ms);
}

TEST_CASE("a GIF is shown once, or once more than its extension says, or for ever")
{
    auto const plays = [](int repeats) {
        auto const source = animation(writeGif(canvas, { filled(red), filled(blue) }, { repeats }));
        REQUIRE(source);
        return source->loopCount();
    };
    CHECK(plays(-1) == 1);
    CHECK(plays(0) == 0);
    CHECK(plays(1) == 2);
    CHECK(plays(65535) == 65536);
}

TEST_CASE("how often a GIF is shown may also stand behind its first image")
{
    auto const plays = [](std::size_t place, bool isInterlaced) {
        auto first = filled(red);
        first.isInterlaced = isInterlaced;
        first.hasOwnColors = true;
        auto const source
            = animation(writeGif(canvas, { first, filled(green), filled(blue) }, { 4, place }));
        REQUIRE(source);
        CHECK(framesOf(*source).size() == 3);
        return source->loopCount();
    };
    for (bool const isInterlaced : { false, true }) {
        CHECK(plays(0, isInterlaced) == 5);
        CHECK(plays(1, isInterlaced) == 5);
        CHECK(plays(2, isInterlaced) == 1); // so far on nobody looks
    }
}

TEST_CASE("a GIF begins again with an empty canvas, and can begin again in the middle")
{
    auto hole = filled(red, 0, 0, { 4, 8 });
    auto const source = animation(writeGif(canvas, { hole, filled(green, 4, 0, { 4, 8 }) }));
    REQUIRE(source);
    REQUIRE(framesOf(*source).size() == 2);
    CHECK(std::get<AnimationEnd>(source->nextFrame()) == AnimationEnd::ofLoop);
    source->restart();
    auto const first = std::get<AnimationFrame>(source->nextFrame());
    CHECK(colorAt(first.bitmap, 6, 6) == nothing);
    source->restart();
    CHECK(framesOf(*source).size() == 2);
}

TEST_CASE("the frames come reduced to the longest side that is wanted, never enlarged")
{
    auto const file
        = writeGif({ 80, 40 }, { filled(red, 0, 0, { 80, 40 }), filled(green, 40, 0, { 40, 40 }) });
    auto const source = animation(file, 20);
    REQUIRE(source);
    CHECK(source->frameSize() == PixelSize { 20, 10 });
    auto const frames = framesOf(*source);
    REQUIRE(frames.size() == 2);
    CHECK(frames[1].bitmap.size == PixelSize { 20, 10 });
    CHECK(frames[1].bitmap.isOpaque);
    CHECK(colorAt(frames[1].bitmap, 2, 5) == red);
    CHECK(colorAt(frames[1].bitmap, 17, 5) == green);
    CHECK(animation(file, 200)->frameSize() == PixelSize { 80, 40 });
}

TEST_CASE("of a GIF that is cut the whole frames are kept, wherever it is cut")
{
    std::vector<GifFrame> frames;
    for (auto const color : { red, green, blue })
        frames.push_back(filled(color, 1, 1, { 5, 5 }));
    auto const whole = writeGif(canvas, frames, { 3 });
    auto const intact = framesIn(whole);
    REQUIRE(intact.size() == 3);
    std::size_t most = 0;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CAPTURE(length);
        auto const cut
            = framesIn({ whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length) });
        CHECK(cut.size() >= most);
        most = cut.size();
        for (std::size_t i = 1; i < cut.size(); ++i)
            CHECK(meanDifference(cut[i].bitmap, intact[i].bitmap) == 0);
    }
    CHECK(most == 3);
}

TEST_CASE("many frames of a GIF leave nothing behind")
{
    std::vector<GifFrame> frames(3000, filled(red, 0, 0, { 1, 1 }));
    for (auto& frame : frames)
        frame.hasOwnColors = true;
    CHECK(framesIn(writeGif({ 1, 1 }, frames)).size() == 3000);
}

TEST_CASE("a canvas without pixels or beyond the limit is no animation")
{
    CHECK_FALSE(animation(writeGif({ 0, 8 }, { filled(red) })));
    CHECK_FALSE(animation(writeGif({ 30000, 30000 }, { filled(red) })));
    CHECK_FALSE(animation({}));
    CHECK_FALSE(animation({ 'G', 'I', 'F', '8', '9', 'a' }));
}
