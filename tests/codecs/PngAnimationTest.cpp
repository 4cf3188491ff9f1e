#include "codecs/AnimationSupport.h"
#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

constexpr PixelSize canvas { 8, 8 };

ApngFrame filled(std::uint32_t color, int x = 0, int y = 0, PixelSize size = canvas)
{
    return filledFrame<ApngFrame>(color, x, y, size);
}

std::vector<AnimationFrame> disposed(int disposal)
{
    auto square = filled(green, 2, 2, { 4, 4 });
    square.disposal = disposal;
    auto frames
        = framesIn(writeApng(canvas, { filled(red), square, filled(blue, 0, 0, { 1, 1 }) }));
    REQUIRE(frames.size() == 3);
    CHECK(colorAt(frames[1].bitmap, 3, 3) == green);
    CHECK(colorAt(frames[2].bitmap, 0, 0) == blue);
    CHECK(colorAt(frames[2].bitmap, 7, 7) == red);
    return frames;
}

std::size_t framesWith(ApngOptions const& options)
{
    return framesIn(
        writeApng(canvas, { filled(red), filled(green), filled(blue), filled(red) }, options))
        .size();
}

} // namespace

TEST_CASE("a frame of a PNG stays, leaves a hole, or gives way to what was there")
{
    CHECK(colorAt(disposed(0)[2].bitmap, 3, 3) == green);
    CHECK(colorAt(disposed(1)[2].bitmap, 3, 3) == nothing);
    CHECK(colorAt(disposed(2)[2].bitmap, 3, 3) == red);
}

TEST_CASE("the first frame of a PNG has nothing to give way to")
{
    auto first = filled(red);
    first.disposal = 2;
    auto const frames = framesIn(writeApng(canvas, { first, filled(blue, 0, 0, { 1, 1 }) }));
    REQUIRE(frames.size() == 2);
    CHECK(colorAt(frames[1].bitmap, 3, 3) == nothing);
}

TEST_CASE("a frame of a PNG replaces what is below it, or is drawn over it")
{
    for (auto const blend : { 0, 1 }) {
        CAPTURE(blend);
        auto half = filled(0x00FF0080);
        half.pixels.at(2, 2)[3] = 0;
        half.blend = blend;
        auto const frames = framesIn(writeApng(canvas, { filled(red), half }));
        REQUIRE(frames.size() == 2);
        auto const& bitmap = frames[1].bitmap;
        CHECK(colorAt(bitmap, 2, 2) == (blend == 0 ? nothing : red));
        CHECK(colorAt(bitmap, 5, 5) == (blend == 0 ? 0x00800080U : 0x7F8000FFU));
        CHECK(bitmap.isOpaque == (blend == 1));
    }
}

TEST_CASE("half a colour over half a colour is three quarters")
{
    auto over = filled(0x00FF0080);
    over.blend = 1;
    auto const frames = framesIn(writeApng(canvas, { filled(0xFF000080), over }));
    REQUIRE(frames.size() == 2);
    auto const* at = pixelAt(frames[1].bitmap, 4, 4);
    CHECK(at[3] == 0xC0);
    CHECK(at[2] == 0x40);
    CHECK(at[1] == 0x80);
}

TEST_CASE("a default image that is no frame is not shown")
{
    ApngOptions options;
    options.still = RgbaPixels::filled(canvas, blue);
    auto const frames
        = framesIn(writeApng(canvas, { filled(red, 2, 2, { 3, 3 }), filled(green) }, options));
    REQUIRE(frames.size() == 2);
    CHECK(colorAt(frames[0].bitmap, 0, 0) == nothing);
    CHECK(colorAt(frames[0].bitmap, 3, 3) == red);
    CHECK(colorAt(frames[1].bitmap, 3, 3) == green);
}

TEST_CASE("the frames of every kind of PNG come out as its still pictures do")
{
    using Kind = PngOptions::Kind;
    auto const pixels = sampleWithAlpha({ 24, 16 });
    for (auto const kind : { Kind::rgb8, Kind::rgba8, Kind::rgb16, Kind::rgba16, Kind::grey1,
             Kind::grey8, Kind::greyAlpha8, Kind::palette, Kind::paletteAlpha, Kind::rgbKey }) {
        for (auto const isInterlaced : { false, true }) {
            CAPTURE(int(kind));
            ApngOptions options;
            options.png.kind = kind;
            options.png.isInterlaced = isInterlaced;
            ApngFrame frame;
            frame.pixels = pixels;
            frame.pieces = 3;
            auto const frames = framesIn(writeApng({ 24, 16 }, { frame, frame }, options));
            REQUIRE(frames.size() == 2);
            auto const still = opened(writePng(pixels, options.png))->decodeWhole();
            REQUIRE(still);
            CHECK(meanDifference(frames[0].bitmap, still->bitmap) == 0);
            CHECK(meanDifference(frames[1].bitmap, still->bitmap) == 0);
        }
    }
}

TEST_CASE("the delays of a PNG are fractions of a second, of hundredths if of nothing")
{
    std::vector<ApngFrame> frames(5, filled(red));
    auto const state = [](ApngFrame& frame, int delay, int parts) {
        frame.delay = delay;
        frame.parts = parts;
    };
    state(frames[0], 0, 1000);
    state(frames[1], 10, 1000);
    state(frames[2], 1, 60);
    state(frames[3], 7, 0);
    state(frames[4], 2, 1);
    auto const shown = framesIn(writeApng(canvas, frames));
    REQUIRE(shown.size() == 5);
    CHECK(shown[0].delay == 100ms);
    CHECK(shown[1].delay == 100ms);
    CHECK(shown[2].delay == 16'666us);
    CHECK(shown[3].delay == 70ms);
    CHECK(shown[4].delay == 2s);
}

TEST_CASE("a PNG is shown as often as it says")
{
    for (auto const plays : { 0U, 1U, 7U }) {
        ApngOptions options;
        options.plays = plays;
        auto const source = animation(writeApng(canvas, { filled(red), filled(blue) }, options));
        REQUIRE(source);
        CHECK(source->loopCount() == int(plays));
    }
}

TEST_CASE("a PNG ends in front of a frame whose number is not the next")
{
    ApngOptions options;
    CHECK(framesWith(options) == 4);
    options.skippedAt = 2;
    CHECK(framesWith(options) == 2);
}

TEST_CASE("of a PNG that is wrong from the first number on the picture is shown that every program "
          "shows")
{
    ApngOptions options;
    options.firstNumber = 1;
    options.still = RgbaPixels::filled(canvas, blue);
    auto const frames = framesIn(writeApng(canvas, { filled(red), filled(green) }, options));
    REQUIRE(frames.size() == 1);
    CHECK(colorAt(frames[0].bitmap, 3, 3) == blue);
}

TEST_CASE("a PNG has as many frames as it says, or as there are")
{
    ApngOptions options;
    options.frames = 3;
    CHECK(framesWith(options) == 3);
    options.frames = 99;
    CHECK(framesWith(options) == 4);
    options.frames = 0;
    CHECK_FALSE(animation(writeApng(canvas, { filled(red) }, options)));
    CHECK_FALSE(animation(writePng(RgbaPixels::filled(canvas, red))));
}

TEST_CASE("a PNG ends in front of a frame that does not lie on its canvas")
{
    for (auto const& wrong : { filled(blue, 1, 0), filled(blue, 0, 5, { 4, 4 }) })
        CHECK(framesIn(writeApng(canvas, { filled(red), wrong, filled(red) })).size() == 1);
}

TEST_CASE("a PNG ends in front of a frame that asks for what there is not")
{
    for (auto const isBlend : { false, true }) {
        auto wrong = filled(blue);
        (isBlend ? wrong.blend : wrong.disposal) = 3;
        CHECK(framesIn(writeApng(canvas, { filled(red), wrong, filled(red) })).size() == 1);
    }
}

TEST_CASE("a PNG ends in front of a frame with a wrong bit")
{
    std::vector<ApngFrame> frames;
    for (int i = 0; i < 3; ++i) {
        ApngFrame frame;
        frame.pixels = sampleColors({ 30, 30 });
        frames.push_back(frame);
    }
    auto file = writeApng({ 30, 30 }, frames);
    auto const intact = framesIn(file);
    REQUIRE(intact.size() == 3);
    file[file.size() - 60] ^= 0x10; // in the pixels of the last
    CHECK(framesIn(file).size() == 2);
}

TEST_CASE("a PNG begins again with an empty canvas")
{
    auto const source = animation(
        writeApng(canvas, { filled(red, 0, 0, canvas), filled(green, 4, 0, { 4, 8 }) }));
    REQUIRE(source);
    auto const once = framesOf(*source);
    source->restart();
    auto const again = framesOf(*source);
    REQUIRE(once.size() == 2);
    REQUIRE(again.size() == 2);
    for (std::size_t i = 0; i < 2; ++i)
        CHECK(meanDifference(once[i].bitmap, again[i].bitmap) == 0);
}

TEST_CASE("of a PNG that is cut the whole frames are kept, wherever it is cut")
{
    std::vector<ApngFrame> frames;
    for (auto const color : { red, green, blue })
        frames.push_back(filled(color));
    auto const whole = writeApng(canvas, frames);
    auto const intact = framesIn(whole);
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
