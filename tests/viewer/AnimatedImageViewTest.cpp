#include "viewer/AnimatedImageView.h"
#include "support/FakeAnimation.h"
#include "support/FakeBackground.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>
#include <map>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

struct Desk {
    Desk()
    {
        decoder.animationOf = [this](FileUrl const& url, int maxPixel) {
            askedPixel = maxPixel;
            std::string const name(url.name());
            opened.push_back(name);
            auto const film = films.find(name);
            return film == films.end() ? nullptr
                                       : std::make_unique<FakeAnimation>(film->second, record);
        };
        view = std::make_unique<AnimatedImageView>(
            AnimatedImageView::House {
                decoder, background, loop, [this] { return loop.now() + lateness; } },
            1920, [this] {
                ++changes;
                if (!view->frame().isEmpty())
                    shown.emplace_back(loop.now(), *view->frame().row(0));
            });
    }

    void show(std::string const& name) { view->show(FileUrl("/photos/" + name)); }
    // The decoder does all that is asked of it in no time.
    void decode()
    {
        loop.settle();
        while (background.pending() > 0) {
            background.finishAll();
            loop.settle();
        }
    }
    // Lets time pass, the decoder being fast.
    void play(std::chrono::milliseconds time)
    {
        for (; time > 0ms; time -= 1ms) {
            decode();
            loop.advance(1ms);
        }
        decode();
    }
    std::vector<int> numbers() const
    {
        std::vector<int> list;
        for (auto const& each : shown)
            list.push_back(each.second);
        return list;
    }
    std::vector<std::chrono::milliseconds> times() const
    {
        std::vector<std::chrono::milliseconds> list;
        for (auto const& each : shown)
            list.push_back(each.first);
        return list;
    }

    FakeImageDecoder decoder;
    FakeBackground background;
    FakeLoop loop;
    AnimationRecord record;
    std::map<std::string, Film> films;
    std::vector<std::string> opened;
    int askedPixel = 0;
    int changes = 0;
    std::chrono::milliseconds lateness { 0 };
    std::vector<std::pair<std::chrono::milliseconds, int>> shown;
    std::unique_ptr<AnimatedImageView> view;
};

using Times = std::vector<std::chrono::milliseconds>;

Film hundred()
{
    return { std::vector(100, std::chrono::microseconds(100ms)), 0, SIZE_MAX, { 4, 4 } };
}

} // namespace

TEST_CASE("each frame is shown for its own time, for ever")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 30ms, 70ms } };
    desk.show("a.gif");
    CHECK(desk.view->frame().isEmpty());
    desk.play(450ms);
    CHECK(desk.numbers() == std::vector { 0, 1, 2, 0, 1, 2, 0 });
    CHECK(desk.times() == Times { 0ms, 100ms, 130ms, 200ms, 300ms, 330ms, 400ms });
    CHECK(desk.askedPixel == 1920);
    CHECK(desk.opened.size() == 1);
}

TEST_CASE("the first frame has its whole time, however long it took to come")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.show("a.gif");
    desk.background.finishAll();
    desk.loop.advance(3s);
    desk.play(250ms);
    CHECK(desk.times() == Times { 3000ms, 3100ms, 3200ms });
}

TEST_CASE("nothing of an animation is read or decoded on the main thread")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 100ms } };
    desk.show("a.gif");
    desk.loop.advance(1s);
    CHECK(desk.opened.empty());
    CHECK(desk.background.pending() == 1);
    CHECK(desk.background.lastPriority == Priority::userInteractive);
    desk.background.finishAll();
    desk.loop.settle();
    CHECK(desk.record.decoded == 0);
    CHECK(desk.background.pending() == 1);
}

TEST_CASE("delays of fractions of a millisecond do not add up to a drift")
{
    Desk desk;
    desk.films["a.png"] = { std::vector(3, 16'666us) };
    desk.show("a.png");
    desk.play(1000ms);
    CHECK(desk.shown.size() == 61);
    CHECK(desk.times().back() == 1000ms);
}

TEST_CASE("frames that come a little late do not make those behind them late")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.show("a.gif");
    desk.decode();
    desk.lateness = 30ms; // from here on every timer fires so late
    desk.play(970ms);
    CHECK(desk.shown.size() == 11);
    CHECK(desk.times().back() == 970ms);
}

TEST_CASE("a slow decoder makes it slower, but leaves no frame out and does not race afterwards")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.show("a.gif");
    desk.decode();
    desk.loop.advance(5s); // nothing is decoded all the time
    CHECK(desk.numbers().back() == static_cast<int>(AnimatedImageView::mostAhead));
    auto const late = desk.loop.now();
    desk.play(1s);
    auto const times = desk.times();
    auto const numbers = desk.numbers();
    CHECK(numbers.size() >= AnimatedImageView::mostAhead + 10);
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        CHECK(numbers[i] == numbers[i - 1] + 1);
        CHECK(times[i] - times[i - 1] >= 50ms);
        if (times[i - 1] > late)
            CHECK(times[i] - times[i - 1] == 100ms);
    }
}

TEST_CASE("it is shown as often as the file says, and its last frame stays")
{
    for (int const loops : { 1, 3 }) {
        Desk desk;
        desk.films["a.gif"] = { { 50ms, 50ms }, loops };
        desk.show("a.gif");
        desk.play(2s);
        CHECK(desk.shown.size() == std::size_t(2 * loops));
        CHECK(*desk.view->frame().row(0) == 1);
        CHECK(desk.record.alive == 0);
        CHECK(desk.loop.timers() == 0);
        CHECK(desk.record.restarts == loops - 1);
    }
}

TEST_CASE("frames are decoded ahead, but only so many")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.show("a.gif");
    desk.decode();
    auto const most = static_cast<int>(AnimatedImageView::mostAhead);
    CHECK(desk.record.decoded == most + 1);
    desk.loop.advance(100ms);
    desk.decode();
    CHECK(desk.record.decoded == most + 2);
}

TEST_CASE("of large frames fewer are decoded ahead, and one at least")
{
    for (auto const& [size, wanted] :
        { std::pair { PixelSize { 1920, 1080 }, 2 }, { PixelSize { 3840, 2160 }, 1 } }) {
        Desk desk;
        desk.films["a.gif"] = hundred();
        desk.films["a.gif"].size = size;
        desk.show("a.gif");
        desk.decode();
        CHECK(desk.record.decoded == 1 + wanted);
        desk.play(1s);
        CHECK(desk.record.decoded == 11 + wanted);
    }
}

TEST_CASE("the frames of the next loop are decoded before the last of this one is over")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 100ms } };
    desk.show("a.gif");
    desk.decode();
    CHECK(desk.record.restarts >= 1);
    desk.loop.advance(300ms); // without the decoder
    CHECK(desk.numbers() == std::vector { 0, 1, 0, 1 });
}

TEST_CASE("the same file again changes nothing")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 100ms, 100ms } };
    desk.show("a.gif");
    desk.play(120ms);
    desk.show("a.gif");
    desk.play(100ms);
    CHECK(desk.opened.size() == 1);
    CHECK(desk.numbers() == std::vector { 0, 1, 2 });
}

TEST_CASE("another file is played from its beginning, and the first is given up")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 100ms, 100ms } };
    desk.films["b.gif"] = { { 40ms, 40ms } };
    desk.show("a.gif");
    desk.play(120ms);
    desk.show("b.gif");
    CHECK(desk.view->frame().isEmpty());
    CHECK(desk.record.stops == 1);
    CHECK(desk.loop.timers() == 0);
    desk.shown.clear();
    desk.play(50ms);
    CHECK(desk.record.alive == 1);
    CHECK(desk.numbers() == std::vector { 0, 1 });
    CHECK(desk.view->loadedUrl() == FileUrl("/photos/b.gif"));
}

TEST_CASE("a file that cannot be loaded shows nothing and is not tried again")
{
    Desk desk;
    desk.films["empty.gif"] = {};
    for (auto const* const name : { "missing.gif", "empty.gif" }) {
        desk.show(name);
        desk.play(300ms);
        CHECK(desk.view->frame().isEmpty());
        CHECK(desk.view->loadedUrl() == FileUrl(std::string("/photos/") + name));
        desk.show(name);
        desk.play(300ms);
    }
    CHECK(desk.opened.size() == 2);
    CHECK(desk.changes == 0);
    CHECK(desk.record.alive == 0);
}

TEST_CASE("while there is no place to play it an animation asks again now and then")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.films["a.gif"].waits = 3;
    desk.show("a.gif");
    desk.play(3 * AnimatedImageView::retryTime - 1ms);
    CHECK(desk.view->frame().isEmpty());
    CHECK(desk.opened.size() == 1);
    desk.play(252ms);
    CHECK(desk.numbers() == std::vector { 0, 1, 2 });
}

TEST_CASE("where the decoder goes the play ends with the last good frame")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.films["a.gif"].brokenAt = 3;
    desk.show("a.gif");
    desk.play(2s);
    CHECK(desk.numbers() == std::vector { 0, 1, 2 });
    CHECK(*desk.view->frame().row(0) == 2);
    CHECK(desk.record.alive == 0);
}

TEST_CASE("one good frame stands still and costs nothing")
{
    Desk desk;
    desk.films["a.gif"] = { { 20ms } };
    desk.show("a.gif");
    desk.play(1s);
    CHECK(desk.numbers() == std::vector { 0 });
    CHECK(desk.record.decoded == 1);
    CHECK(desk.record.alive == 0);
}

TEST_CASE("dropping the view stops everything at once")
{
    Desk desk;
    desk.films["a.gif"] = hundred();
    desk.show("a.gif");
    desk.decode();
    desk.loop.advance(100ms);
    CHECK(desk.background.pending() == 1); // a frame is on its way
    auto const decoded = desk.record.decoded;
    auto const changes = desk.changes;
    desk.view.reset();
    CHECK(desk.record.stops == 1);
    CHECK(desk.loop.timers() == 0);
    desk.decode();
    desk.loop.advance(1s);
    CHECK(desk.record.decoded == decoded);
    CHECK(desk.changes == changes);
    CHECK(desk.record.alive == 0);
}

TEST_CASE("a view that is dropped while its file is opened never hears of it")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 100ms } };
    desk.show("a.gif");
    desk.background.finishAll();
    desk.view.reset();
    desk.loop.advance(1s);
    CHECK(desk.record.alive == 0);
    CHECK(desk.record.decoded == 0);
    CHECK(desk.changes == 0);
}

TEST_CASE("an animation that opens when nobody wants it any more is let go of off the main thread")
{
    Desk desk;
    desk.films["a.gif"] = { { 100ms, 100ms } };
    desk.show("a.gif");
    auto const open = desk.decoder.animationOf;
    int opened = 0;
    desk.decoder.animationOf = [&](FileUrl const& url, int maxPixel) {
        desk.view.reset();
        ++opened;
        return open(url, maxPixel);
    };
    desk.background.finishAll();
    CHECK(opened == 1);
    CHECK(desk.record.alive == 0);
}
