#include "ports/WorkQueue.h"
#include "support/Desk.h"
#include "support/FakeImageDecoder.h"
#include "window/GridView.h"
#include <array>
#include <cmath>
#include <deque>
#include <doctest/doctest.h>
#include <map>

using namespace pixelhain;

namespace {

constexpr double lookTime = 0.2; // milliseconds
constexpr double quickTime = 6;
constexpr double slowTime = 70;

/// A decoder that tells how long it would have taken.
class CostlyDecoder final : public ImageDecoder {
public:
    std::optional<DecodedPicture> decode(DecodeRequest const& request) override
    {
        charge(request.file, isQuick(request.file) ? quickTime : slowTime);
        decoded.push_back(request.file);
        return DecodedPicture { grayBitmap({ 4, 3 }), PixelOrigin::full };
    }
    std::optional<Glance> glance(FileUrl const& file, int) override
    {
        charge(file, lookTime);
        if (decoded.empty())
            looksBeforeDecoding.push_back(file);
        return Glance { { PixelSize { 4, 3 }, false }, grayBitmap({ 2, 2 }), isQuick(file) };
    }
    std::optional<ImageMeta> readMeta(FileUrl const&) override { return std::nullopt; }
    std::optional<PhotoProperties> readProperties(FileUrl const&) override { return std::nullopt; }
    std::unique_ptr<AnimationSource> openAnimation(FileUrl const&, int) override { return nullptr; }

    void charge(FileUrl const& file, double time)
    {
        costs[file] += time;
        last += time;
    }

    std::function<bool(FileUrl const&)> isQuick = [](FileUrl const&) { return false; };
    std::map<FileUrl, double> costs;
    double last = 0; ///< since it was last set to 0
    std::vector<FileUrl> decoded;
    std::vector<FileUrl> looksBeforeDecoding;
};

/// Two processors that work off a queue in a time of their own.
class SimulatedQueue final : public WorkQueue {
public:
    explicit SimulatedQueue(CostlyDecoder& decoder)
        : decoder_(decoder)
    {
    }

    void add(std::function<void()> item) override { items_.push_back(std::move(item)); }

    void runUntil(double now)
    {
        for (auto& freeAt : freeAt_) {
            freeAt = std::max(freeAt, now - 1);
            while (freeAt < now && !items_.empty()) {
                auto const item = std::move(items_.front());
                items_.pop_front();
                decoder_.last = 0;
                item();
                freeAt += decoder_.last;
            }
        }
    }

    bool isBusy(double now) const
    {
        return std::ranges::all_of(freeAt_, [now](double freeAt) { return freeAt >= now; });
    }
    bool isIdle(double now) const
    {
        return items_.empty()
            && std::ranges::all_of(freeAt_, [now](double freeAt) { return freeAt < now; });
    }

private:
    CostlyDecoder& decoder_;
    std::deque<std::function<void()>> items_;
    std::array<double, 2> freeAt_ {};
};

/// A gallery of eight columns on a clock of its own: everything but the pictures is real.
struct Simulation {
    static constexpr double height = 1000;
    static constexpr double rowStep = 180;

    Desk desk;
    CostlyDecoder decoder;
    SimulatedQueue queue { decoder };
    ImageLoader loader { { desk.loop, desk.background, decoder, queue, queue } };
    LoaderThumbnails thumbnails { loader };
    GridView grid { desk.model(), thumbnails, desk.loop, [](FileUrl const&) {} };
    double now = 0; ///< milliseconds

    explicit Simulation(int count = 20'000)
    {
        Names names;
        for (int i = 0; i < count; ++i)
            names.push_back(std::to_string(100'000 + i) + ".jpg");
        desk.open("/b", names);
        desk.model().setThumbSize(170);
        grid.layOut(18 + 8 * rowStep, {});
    }

    void pass(int milliseconds)
    {
        for (int i = 0; i < milliseconds; ++i) {
            desk.background.finishAll();
            queue.runUntil(++now);
            desk.loop.advance(std::chrono::milliseconds(1));
        }
    }

    // Moves along this way, given as a function of the milliseconds, a frame every 16.
    void scroll(double from, int milliseconds, std::function<double(double)> const& way)
    {
        for (int time = 0; time < milliseconds; time += 16) {
            grid.showRows(from + way(time), height);
            pass(16);
        }
    }

    bool isDone() { return desk.background.pending() == 0 && queue.isIdle(now); }

    void finish()
    {
        pass(200);
        while (!isDone())
            pass(1);
    }

    std::size_t indexOf(FileUrl const& url)
    {
        auto const& items = *desk.model().items;
        return static_cast<std::size_t>(
            std::ranges::find(items, url, &PhotoItem::url) - items.begin());
    }

    // Of all the time spent so far, the part for cells that are not kept now.
    double wastedShare()
    {
        double wasted = 0;
        double all = 0;
        for (auto const& [url, cost] : decoder.costs) {
            all += cost;
            if (!grid.kept().contains(indexOf(url)))
                wasted += cost;
        }
        return wasted / all;
    }
};

} // namespace

TEST_CASE("a fling through ten thousand cells wastes less than a twentieth of the decoding")
{
    Simulation s;
    SUBCASE("of pictures that take long") { }
    SUBCASE("of pictures with previews")
    {
        s.decoder.isQuick = [](auto const&) { return true; };
    }
    s.grid.showRows(0, Simulation::height);
    s.finish();
    s.decoder.costs.clear();
    // 1250 rows, as a touchpad lets the movement die away.
    constexpr double whole = 1250 * Simulation::rowStep;
    s.scroll(0, 4000, [](double time) { return whole * (1 - std::exp(-time / 325)); });
    s.finish();
    CHECK(s.grid.inView().first > 9'900);
    CHECK(s.grid.isComplete());
    CHECK(s.wastedShare() < 0.05);
}

TEST_CASE("dragging the scroll bar wastes no more than its first step, however long it takes")
{
    Simulation s;
    s.grid.showRows(0, Simulation::height);
    s.finish();
    s.decoder.costs.clear();
    s.scroll(0, 10'000, [](double time) { return 22 * time; });
    s.finish();
    CHECK(s.grid.isComplete());
    CHECK(s.wastedShare() < 0.05);
}

TEST_CASE("a fling that begins while the first page is decoded leaves that at once")
{
    Simulation s;
    s.grid.showRows(0, Simulation::height);
    s.pass(20);
    s.scroll(0, 320, [](double time) { return 100 * time; });
    CHECK(s.decoder.decoded.size() == 2); // they were under way
    s.finish();
    CHECK(s.grid.isComplete());
    auto const first = s.decoder.decoded.at(0);
    CHECK(s.loader.cachedThumbnail(first, 256));
}

TEST_CASE("who reads on slowly finds the pictures begun")
{
    Simulation s;
    s.decoder.isQuick = [](auto const&) { return true; };
    s.grid.showRows(0, Simulation::height);
    s.finish();
    int missing = 0;
    for (int frame = 1; frame < 200; ++frame) {
        s.grid.showRows(frame * 5, Simulation::height);
        s.pass(16);
        missing += s.grid.isComplete() ? 0 : 1;
    }
    CHECK(missing == 0);
}

TEST_CASE(
    "both processors work from the first millisecond, and pictures cost no more for the looks")
{
    Simulation s;
    s.grid.showRows(0, Simulation::height);
    auto const pictures = static_cast<double>(s.grid.kept().count());
    s.pass(1);
    CHECK(s.queue.isBusy(s.now));
    while (!s.isDone()) {
        CHECK((s.queue.isBusy(s.now) || s.decoder.decoded.size() + 1 >= s.grid.kept().count()));
        s.pass(1);
    }
    CHECK(s.now < 1.03 * pictures / 2 * slowTime);
}

TEST_CASE("every file in view is looked into before any picture, pictures with previews come first")
{
    Simulation s;
    s.decoder.isQuick = [&s](FileUrl const& url) { return s.indexOf(url) % 4 == 3; };
    s.grid.showRows(0, Simulation::height);
    s.finish();
    auto const inView = s.grid.inView().count();
    CHECK(s.decoder.looksBeforeDecoding.size() >= inView);
    std::vector<std::size_t> order;
    for (auto const& url : s.decoder.decoded)
        order.push_back(s.indexOf(url));
    REQUIRE(order.size() == s.grid.kept().count());
    for (std::size_t i = 0; i < inView; ++i) {
        CHECK(order[i] < inView);
        CHECK((order[i] % 4 == 3) == (i < inView / 4));
    }
    CHECK(std::ranges::is_sorted(order.begin(), order.begin() + std::ptrdiff_t(inView / 4)));
}

TEST_CASE("after a page was turned its pictures begin at once")
{
    Simulation s;
    s.grid.showRows(0, Simulation::height);
    s.finish();
    auto const before = s.decoder.decoded.size();
    SUBCASE("by one view")
    {
        s.grid.showRows(Simulation::height, Simulation::height);
    }
    SUBCASE("by a movement that begins")
    {
        auto const goal = 5 * Simulation::height;
        s.grid.showRows(goal - 100, Simulation::height, goal);
    }
    s.pass(8);
    CHECK(s.decoder.decoded.size() == before + 2);
    CHECK(s.grid.inView().contains(s.indexOf(s.decoder.decoded.back())));
}

TEST_CASE("a leap to another place is looked at first, and decoded unless it was the first of many")
{
    Simulation s;
    s.grid.showRows(0, Simulation::height);
    s.finish();
    auto const before = s.decoder.decoded.size();
    s.decoder.costs.clear();
    s.grid.showRows(100 * Simulation::rowStep, Simulation::height);
    s.pass(20);
    CHECK(s.decoder.decoded.size() == before);
    CHECK(s.decoder.costs.size() == s.grid.inView().count());
    s.pass(40);
    CHECK(s.decoder.decoded.size() > before);
}
