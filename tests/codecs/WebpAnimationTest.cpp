#include "codecs/AnimationSupport.h"
#include "codecs/CodecSupport.h"
#include <doctest/doctest.h>
#include <random>

#include <webp/demux.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

constexpr PixelSize canvas { 16, 12 };

WebpFrame filled(std::uint32_t color, int x = 0, int y = 0, PixelSize size = canvas)
{
    return filledFrame<WebpFrame>(color, x, y, size);
}

// The frames as the library's own player composes them.
std::vector<Bitmap> composedByLibrary(FileBytes const& file)
{
    WebPAnimDecoderOptions options;
    WebPAnimDecoderOptionsInit(&options);
    options.color_mode = MODE_bgrA;
    WebPData const data { file.data(), file.size() };
    auto* const decoder = WebPAnimDecoderNew(&data, &options);
    REQUIRE(decoder != nullptr);
    WebPAnimInfo info;
    WebPAnimDecoderGetInfo(decoder, &info);
    std::vector<Bitmap> frames;
    while (WebPAnimDecoderHasMoreFrames(decoder) != 0) {
        std::uint8_t* pixels = nullptr;
        int time = 0;
        REQUIRE(WebPAnimDecoderGetNext(decoder, &pixels, &time) != 0);
        auto bitmap = Bitmap::allocate({ int(info.canvas_width), int(info.canvas_height) }, false);
        for (int y = 0; y < bitmap.size.height; ++y)
            std::memcpy(bitmap.row(y), pixels + std::size_t(y) * info.canvas_width * 4,
                std::size_t { info.canvas_width } * 4);
        frames.push_back(bitmap);
    }
    WebPAnimDecoderDelete(decoder);
    return frames;
}

} // namespace

TEST_CASE("a frame of a WebP stays or leaves a hole, whatever the background is")
{
    for (auto const isCleared : { false, true }) {
        auto square = filled(green, 4, 4, { 4, 4 });
        square.isCleared = isCleared;
        auto const frames = framesIn(
            writeWebpAnimation(canvas, { filled(red), square, filled(blue, 0, 0, { 2, 2 }) }));
        REQUIRE(frames.size() == 3);
        CHECK(colorAt(frames[1].bitmap, 5, 5) == green);
        CHECK(colorAt(frames[2].bitmap, 5, 5) == (isCleared ? nothing : green));
        CHECK(colorAt(frames[2].bitmap, 10, 10) == red);
        CHECK(colorAt(frames[2].bitmap, 1, 1) == blue);
    }
}

TEST_CASE("a frame of a WebP is drawn over what is below it, or replaces it")
{
    for (auto const isBlended : { false, true }) {
        auto half = filled(0x00FF0080, 2, 2, { 6, 6 });
        half.isBlended = isBlended;
        auto const frames = framesIn(writeWebpAnimation(canvas, { filled(red), half }));
        REQUIRE(frames.size() == 2);
        CHECK(colorAt(frames[1].bitmap, 4, 4) == (isBlended ? 0x7F8000FFU : 0x00800080U));
        CHECK(colorAt(frames[1].bitmap, 1, 1) == red);
    }
}

TEST_CASE("random animations come out as the library's own player shows them")
{
    std::mt19937 random(7);
    auto const below = [&random](int limit) { return int(random() % unsigned(limit)); };
    for (int turn = 0; turn < 40; ++turn) {
        CAPTURE(turn);
        std::vector<WebpFrame> frames;
        for (int i = 0; i < 8; ++i) {
            auto const x = below(7) * 2;
            auto const y = below(5) * 2;
            PixelSize const size { 1 + below(canvas.width - x), 1 + below(canvas.height - y) };
            auto frame = filled(static_cast<std::uint32_t>(random()), x, y, size);
            if (below(3) == 0)
                frame.pixels.at(0, 0)[3] = 0;
            frame.isCleared = below(2) == 0;
            frame.isBlended = below(2) == 0;
            frames.push_back(frame);
        }
        auto const file = writeWebpAnimation(canvas, frames);
        auto const ours = framesIn(file);
        auto const theirs = composedByLibrary(file);
        REQUIRE(ours.size() == theirs.size());
        for (std::size_t i = 0; i < ours.size(); ++i)
            for (int y = 0; y < canvas.height; ++y)
                for (int x = 0; x < canvas.width * 4; ++x) // rounded in other places
                    CHECK(std::abs(ours[i].bitmap.row(y)[x] - theirs[i].row(y)[x]) <= 3);
    }
}

TEST_CASE("the delays of a WebP are milliseconds, and next to none are a tenth of a second")
{
    std::vector<WebpFrame> frames(4, filled(red));
    frames[0].delay = 0;
    frames[1].delay = 10;
    frames[2].delay = 11;
    frames[3].delay = 0xFFFFFF;
    auto const shown = framesIn(writeWebpAnimation(canvas, frames));
    REQUIRE(shown.size() == 4);
    CHECK(shown[0].delay == 100ms);
    CHECK(shown[1].delay == 100ms);
    CHECK(shown[2].delay == 11ms);
    CHECK(shown[3].delay == 16'777'215ms);
}

TEST_CASE("a WebP is shown as often as it says")
{
    for (auto const plays : { 0, 1, 9 }) {
        WebpAnimationOptions options;
        options.plays = plays;
        auto const source = animation(writeWebpAnimation(canvas, { filled(red) }, options));
        REQUIRE(source);
        CHECK(source->loopCount() == plays);
    }
    CHECK_FALSE(animation(writeWebp(RgbaPixels::filled(canvas, red))));
}

TEST_CASE("frames of a WebP that reach beyond the canvas are cut")
{
    auto const frames = framesIn(writeWebpAnimation(
        canvas, { filled(red), filled(green, 12, 8, { 8, 8 }), filled(blue, 40, 40, { 4, 4 }) }));
    REQUIRE(frames.size() == 3);
    CHECK(colorAt(frames[1].bitmap, 15, 11) == green);
    CHECK(colorAt(frames[1].bitmap, 11, 7) == red);
    CHECK(meanDifference(frames[2].bitmap, frames[1].bitmap) == 0);
}

TEST_CASE("lossy frames of a WebP keep their transparency")
{
    WebpAnimationOptions options;
    options.isLossless = false;
    WebpFrame frame;
    frame.pixels = sampleWithAlpha({ 40, 40 });
    auto const frames = framesIn(writeWebpAnimation({ 40, 40 }, { frame, frame }, options));
    REQUIRE(frames.size() == 2);
    CHECK(pixelAt(frames[0].bitmap, 38, 3)[3] == 0);
    CHECK(meanDifference(frames[0].bitmap, frame.pixels) < 12);
}

TEST_CASE("a WebP begins again with an empty canvas")
{
    auto const source = animation(
        writeWebpAnimation(canvas, { filled(red, 0, 0, { 4, 4 }), filled(green, 8, 8, { 4, 4 }) }));
    REQUIRE(source);
    REQUIRE(framesOf(*source).size() == 2);
    source->restart();
    auto const again = framesOf(*source);
    REQUIRE(again.size() == 2);
    CHECK(colorAt(again[0].bitmap, 9, 9) == nothing);
}

TEST_CASE("a WebP ends in front of a frame that has another size than it says")
{
    auto file = writeWebpAnimation(canvas, { filled(red), filled(green), filled(blue) });
    std::string_view const text(reinterpret_cast<char const*>(file.data()), file.size());
    auto const second = text.find("ANMF", text.find("ANMF") + 1);
    file[second + 8 + 6] ^= 1; // its width
    CHECK(framesIn(file).size() == 1);
}

TEST_CASE("of a WebP that is cut the whole frames are kept, wherever it is cut")
{
    std::vector<WebpFrame> const frames { filled(red), filled(green), filled(blue) };
    auto const whole = writeWebpAnimation(canvas, frames);
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
    CHECK(most >= 2);
}
