#include "decoder/InProcessDecoder.h"
#include "decoder/PooledDecoder.h"
#include "support/AnimationWriters.h"
#include "support/Places.h"
#include "support/TemporaryFolder.h"
#include <cstring>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <thread>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

WorkerPool::Options options(std::string const& program = "pixelhain-faulty-decoder")
{
    WorkerPool::Options options;
    options.program = buildFolder() + "/" + program;
    options.rate = RestartRate(1ms, 1ms);
    return options;
}

struct Desk {
    explicit Desk(WorkerPool::Options chosen = options(), std::chrono::nanoseconds frameTime = 5s)
        : decoder(std::move(chosen), PooledDecoder::usualDeadline, frameTime)
    {
    }

    FileUrl file(std::string const& name, FileBytes const& bytes) const
    {
        return folder.file(name, { reinterpret_cast<char const*>(bytes.data()), bytes.size() });
    }
    FileUrl bad(std::string const& command) const
    {
        return folder.file("bad", "X-TEST " + command);
    }
    FileUrl good() const
    {
        return file("good", writeJpeg(RgbaPixels::filled({ 60, 40 }, 0x00C000FF)));
    }
    bool shows(FileUrl const& url)
    {
        return decoder.decode({ url, 30, EmbeddedPreviews::prefer }).has_value();
    }

    TemporaryFolder folder;
    PooledDecoder decoder;
};

bool isFrame(AnimationStep const& step)
{
    return std::holds_alternative<AnimationFrame>(step);
}

bool isOver(AnimationStep const& step)
{
    auto const* const end = std::get_if<AnimationEnd>(&step);
    return end != nullptr && *end == AnimationEnd::ofPlay;
}

bool isLoopsEnd(AnimationStep const& step)
{
    auto const* const end = std::get_if<AnimationEnd>(&step);
    return end != nullptr && *end == AnimationEnd::ofLoop;
}

// Frames before something else comes, 20 at most.
int framesBeforeEnd(AnimationSource& source)
{
    int count = 0;
    while (count < 20 && isFrame(source.nextFrame()))
        ++count;
    return count;
}

FileBytes gifOf(int frames, PixelSize size = { 40, 30 })
{
    std::vector<GifFrame> list(static_cast<std::size_t>(frames));
    for (std::size_t i = 0; i < list.size(); ++i) {
        list[i].pixels = RgbaPixels::filled(size, i % 2 == 0 ? 0xFF0000FF : 0x0000FFFF);
        list[i].delay = 4;
    }
    return writeGif(size, list, { 2 });
}

FileBytes pngOf(PixelSize size)
{
    ApngFrame whole;
    whole.pixels = RgbaPixels::filled(size, 0x00FF00FF);
    ApngFrame part;
    part.pixels = RgbaPixels::filled({ 5, 5 }, 0xFF000080);
    part.blend = 1;
    part.disposal = 1;
    return writeApng(size, { whole, part, part });
}

FileBytes webpOf(PixelSize size)
{
    WebpFrame frame;
    frame.pixels = RgbaPixels::filled(size, 0xFF00FFFF);
    WebpFrame half;
    half.pixels = RgbaPixels::filled({ 8, 8 }, 0x00FF0040);
    half.isCleared = true;
    return writeWebpAnimation(size, { frame, half, half });
}

std::size_t linesOf(char const* path)
{
    std::ifstream file(path);
    std::string line;
    std::size_t count = 0;
    while (std::getline(file, line))
        ++count;
    return count;
}

int openDescriptors()
{
    int count = 0;
    for (int number = 0; number < 1024; ++number)
        count += ::fcntl(number, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

} // namespace

TEST_CASE("an animation comes out of its process as it does without one")
{
    Desk desk(options("pixelhain-decoder"));
    InProcessDecoder inProcess;
    for (auto const& bytes : { gifOf(5), pngOf({ 40, 30 }), webpOf({ 40, 30 }) }) {
        auto const file = desk.file("animation", bytes);
        for (int const maxPixel : { 0, 17, 100 }) {
            auto const ours = desk.decoder.openAnimation(file, maxPixel);
            auto const wanted = inProcess.openAnimation(file, maxPixel);
            REQUIRE(ours);
            REQUIRE(wanted);
            CHECK(ours->frameSize() == wanted->frameSize());
            CHECK(ours->loopCount() == wanted->loopCount());
            for (int loop = 0; loop < 2; ++loop) {
                for (;;) {
                    auto const have = ours->nextFrame();
                    auto const want = wanted->nextFrame();
                    REQUIRE(have.index() == want.index());
                    if (!isFrame(want))
                        break;
                    auto const& a = std::get<AnimationFrame>(have);
                    auto const& b = std::get<AnimationFrame>(want);
                    CHECK(a.delay == b.delay);
                    CHECK(a.bitmap.isOpaque == b.bitmap.isOpaque);
                    REQUIRE(a.bitmap.size == b.bitmap.size);
                    for (int y = 0; y < a.bitmap.size.height; ++y)
                        CHECK(std::memcmp(a.bitmap.row(y), b.bitmap.row(y),
                                  static_cast<std::size_t>(a.bitmap.size.width) * 4)
                            == 0);
                }
                CHECK(isLoopsEnd(ours->nextFrame()));
                ours->restart();
                wanted->restart();
            }
        }
    }
}

TEST_CASE("an animation can begin again in the middle")
{
    Desk desk;
    auto const source = desk.decoder.openAnimation(desk.file("a.gif", gifOf(6)), 0);
    REQUIRE(source);
    CHECK(isFrame(source->nextFrame()));
    CHECK(isFrame(source->nextFrame()));
    source->restart();
    CHECK(framesBeforeEnd(*source) == 6);
}

TEST_CASE("what is no animation, is empty, missing or no regular file is none")
{
    Desk desk;
    CHECK_FALSE(desk.decoder.openAnimation(desk.good(), 0));
    CHECK_FALSE(desk.decoder.openAnimation(desk.file("empty.gif", {}), 0));
    CHECK_FALSE(desk.decoder.openAnimation(desk.folder.url().child("missing.gif"), 0));
    CHECK_FALSE(desk.decoder.openAnimation(desk.folder.url(), 0));
}

TEST_CASE("an animation ends where its process does, and keeps the frames that came before")
{
    for (auto const* const command : { "segv", "kill", "abort", "exit", "throw" }) {
        CAPTURE(std::string(command));
        Desk desk;
        auto const source
            = desk.decoder.openAnimation(desk.bad("play:3:" + std::string(command)), 0);
        REQUIRE(source);
        std::vector<AnimationFrame> kept;
        for (int i = 0; i < 3; ++i) {
            auto step = source->nextFrame();
            REQUIRE(isFrame(step));
            kept.push_back(std::get<AnimationFrame>(step));
        }
        CHECK(isOver(source->nextFrame()));
        source->restart();
        CHECK(isOver(source->nextFrame()));
        for (int i = 0; i < 3; ++i) // each has its own memory
            CHECK(*kept[std::size_t(i)].bitmap.row(11) == i);
        CHECK(desk.shows(desk.good()));
    }
}

TEST_CASE("a frame that never comes ends the play when its time is used up")
{
    for (auto const* const command : { "spin", "silent", "stop", "leave" }) {
        CAPTURE(std::string(command));
        Desk desk(options(), 200ms);
        auto const source
            = desk.decoder.openAnimation(desk.bad("play:3:" + std::string(command)), 0);
        REQUIRE(source);
        CHECK(framesBeforeEnd(*source) == 3);
        CHECK(isOver(source->nextFrame()));
        CHECK(desk.shows(desk.good()));
    }
}

TEST_CASE("no more are played at a time than anybody looks at; the next waits until one ends")
{
    Desk desk(options("pixelhain-decoder"));
    auto const file = desk.file("a.gif", gifOf(3));
    std::vector<std::unique_ptr<AnimationSource>> playing;
    for (int i = 0; i < WorkerPool::mostPlaying; ++i) {
        playing.push_back(desk.decoder.openAnimation(file, 0));
        REQUIRE(playing.back());
        REQUIRE(isFrame(playing.back()->nextFrame()));
    }
    auto const waiting = desk.decoder.openAnimation(file, 0);
    REQUIRE(waiting);
    for (int i = 0; i < 2; ++i)
        CHECK(std::get<AnimationEnd>(waiting->nextFrame()) == AnimationEnd::notYet);
    playing.pop_back();
    CHECK(isFrame(waiting->nextFrame()));
    CHECK(waiting->frameSize() == PixelSize { 40, 30 });
    CHECK(waiting->loopCount() == 3);
    CHECK(framesBeforeEnd(*waiting) == 2);
}

TEST_CASE("what waits for its turn to be played and is no animation is over when it comes")
{
    Desk desk(options("pixelhain-decoder"));
    auto const file = desk.file("a.gif", gifOf(3));
    std::vector<std::unique_ptr<AnimationSource>> playing;
    for (int i = 0; i < WorkerPool::mostPlaying; ++i)
        playing.push_back(desk.decoder.openAnimation(file, 0));
    auto const waiting = desk.decoder.openAnimation(desk.good(), 0);
    REQUIRE(waiting);
    playing.clear();
    CHECK(isOver(waiting->nextFrame()));
    CHECK(isOver(waiting->nextFrame()));
}

TEST_CASE("a process that lies about a frame is not believed")
{
    for (auto const* const command : { "size", "delay", "garbage", "long", "short", "descriptors",
             "twice", "huge", "lie:id", "lie:status", "lie:bytes" }) {
        CAPTURE(std::string(command));
        Desk desk;
        auto const source
            = desk.decoder.openAnimation(desk.bad("play:3:" + std::string(command)), 0);
        REQUIRE(source);
        CHECK(framesBeforeEnd(*source) == 3);
        CHECK(isOver(source->nextFrame()));
        CHECK(desk.shows(desk.good()));
    }
}

TEST_CASE("a process that lies about the animation is not believed")
{
    Desk desk;
    CHECK_FALSE(desk.decoder.openAnimation(desk.bad("play:0:side"), 0));
    CHECK_FALSE(desk.decoder.openAnimation(desk.bad("play:0:large"), 1920));
    CHECK(desk.decoder.openAnimation(desk.bad("play:0:large"), 0));
}

TEST_CASE("a file that cost two processes is not played a third time, and nothing else is refused")
{
    Desk desk;
    auto const file = desk.bad("play:1:exit");
    for (int i = 0; i < 2; ++i) {
        auto const source = desk.decoder.openAnimation(file, 0);
        REQUIRE(source);
        CHECK(framesBeforeEnd(*source) == 1);
    }
    CHECK_FALSE(desk.decoder.openAnimation(file, 0));
    CHECK(desk.decoder.openAnimation(desk.file("a.gif", gifOf(2)), 0));
}

TEST_CASE("a frame that is being waited for is given up at once when nobody wants it any more")
{
    Desk desk(options(), 60s);
    auto const file = desk.bad("play:1:silent");
    for (int i = 0; i < 3; ++i) { // it does not count as the file's fault
        auto const source = desk.decoder.openAnimation(file, 0);
        REQUIRE(source);
        CHECK(isFrame(source->nextFrame()));
        std::atomic<bool> isWaiting = false;
        auto step = AnimationStep(AnimationEnd::ofLoop);
        std::thread waiter([&] {
            isWaiting = true;
            step = source->nextFrame();
        });
        while (!isWaiting)
            std::this_thread::yield();
        source->stop();
        waiter.join();
        CHECK(isOver(step));
    }
}

TEST_CASE("playing animations takes no worker from those who want pictures")
{
    auto narrow = options();
    narrow.width = 1;
    Desk desk(std::move(narrow));
    auto const file = desk.bad("play:-1:");
    std::vector<std::unique_ptr<AnimationSource>> playing;
    for (int i = 0; i < 3; ++i) {
        playing.push_back(desk.decoder.openAnimation(file, 0));
        REQUIRE(playing.back());
        CHECK(isFrame(playing.back()->nextFrame()));
        CHECK(desk.shows(desk.good()));
    }
    for (auto const& source : playing)
        CHECK(isFrame(source->nextFrame()));
}

TEST_CASE("however long an animation is played, descriptors and mappings do not become more")
{
    Desk desk;
    auto const source = desk.decoder.openAnimation(desk.file("a.gif", gifOf(20, { 300, 200 })), 0);
    REQUIRE(source);
    auto const loop = [&] {
        source->restart();
        AnimationStep shown = source->nextFrame();
        for (int i = 0; i < 18; ++i)
            shown = source->nextFrame(); // the one before it is let go of behind the new one
        CHECK(isFrame(shown));
    };
    loop();
    auto const descriptors = openDescriptors();
    auto const mappings = linesOf("/proc/self/maps");
    for (int i = 0; i < 20; ++i)
        loop();
    CHECK(openDescriptors() <= descriptors);
    CHECK(linesOf("/proc/self/maps") <= mappings + 2);
}

TEST_CASE("an animation whose file is cut while it is played ends its loops there")
{
    Desk desk;
    auto const bytes = gifOf(10, { 300, 200 });
    auto const file = desk.file("a.gif", bytes);
    auto const source = desk.decoder.openAnimation(file, 0);
    REQUIRE(source);
    CHECK(framesBeforeEnd(*source) == 10);
    std::filesystem::resize_file(file.path(), bytes.size() / 2);
    source->restart();
    auto const left = framesBeforeEnd(*source);
    CHECK(left > 2);
    CHECK(left < 8);
    CHECK(isLoopsEnd(source->nextFrame()));
}
