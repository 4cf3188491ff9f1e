#include "images/ImageLoader.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeLoop.h"
#include <atomic>
#include <doctest/doctest.h>
#include <memory>
#include <optional>
#include <semaphore>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

constexpr int fileCount = 40;

/// A loader on real threads, with more pictures than its caches hold.
struct Desk {
    FakeLoop loop;
    FakeImageDecoder decoder;
    std::vector<FileUrl> files;
    std::optional<ThreadPool> background { std::in_place };
    std::optional<ThreadQueue> thumbQueue { std::in_place, 3 };
    std::optional<ThreadQueue> displayQueue { std::in_place, 3 };
    std::optional<ImageLoader> loader;

    Desk()
    {
        ImageLoader::Limits limits;
        limits.thumbs.cost = 20 * grayBitmap({ 4, 3 }).cost();
        limits.displays.count = 5;
        loader.emplace(
            ImageLoader::Services { loop, *background, decoder, *thumbQueue, *displayQueue },
            limits);
        for (int i = 0; i < fileCount; ++i) {
            files.emplace_back("/photos/" + std::to_string(i));
            // Every eighth file cannot be read.
            if (i % 8 != 0)
                decoder.put(files.back(), { ImageMeta { PixelSize { i, i }, false } });
        }
    }

    Task load(int number, std::function<void()> const& done)
    {
        auto const& url = files[static_cast<std::size_t>(number % fileCount)];
        auto const whenImage = [done](ImageRef const&) { done(); };
        switch (number % 5) {
        case 0:
            return loader->loadThumbnail(url, 256, whenImage);
        case 4:
            return loader->loadThumbnail(
                url, 384, Turn(), [](FirstLook const&) {}, whenImage);
        case 1:
            return loader->loadMeta(url, [done](std::optional<ImageMeta> const&) { done(); });
        case 2:
            return loader->loadDisplayImage(url, whenImage);
        default:
            return loader->loadFullImage(url, whenImage);
        }
    }
};

} // namespace

TEST_CASE("every load that is not dropped is answered once, on the main thread")
{
    constexpr int loads = 2'000;
    Desk desk;
    auto const mainThread = std::this_thread::get_id();
    std::vector<int> answers(loads, 0);
    std::vector<Task> tasks;
    bool isElsewhere = false;
    for (int i = 0; i < loads; ++i)
        tasks.push_back(desk.load(i, [&, i] {
            ++answers[static_cast<std::size_t>(i)];
            isElsewhere = isElsewhere || std::this_thread::get_id() != mainThread;
        }));
    for (int answered = 0; answered < loads;) {
        desk.loop.settle();
        answered = 0;
        for (int const count : answers)
            answered += count;
        std::this_thread::yield();
    }
    CHECK_FALSE(isElsewhere);
    CHECK(answers == std::vector<int>(loads, 1));
}

TEST_CASE("loads dropped at any moment are never answered, and other threads may look on")
{
    Desk desk;
    std::atomic<bool> isOver = false;
    std::thread looker([&] {
        while (!isOver)
            for (auto const& url : desk.files) {
                static_cast<void>(desk.loader->cachedThumbnail(url, 256));
                static_cast<void>(desk.loader->knownMeta(url));
                desk.loader->prefetchDisplay(url);
            }
    });
    int late = 0;
    std::vector<std::unique_ptr<bool>> dropped;
    for (int i = 0; i < 2'000; ++i) {
        dropped.push_back(std::make_unique<bool>(false));
        auto task = desk.load(i, [&late, isDropped = dropped.back().get()] { late += *isDropped; });
        if (i % 3 == 0)
            desk.loop.settle();
        task.cancel();
        *dropped.back() = true;
    }
    isOver = true;
    looker.join();
    desk.thumbQueue.reset();
    desk.displayQueue.reset();
    desk.loop.settle();
    CHECK(late == 0);
}

TEST_CASE("paging in any hurry shows each photo that is stayed at")
{
    constexpr std::size_t turns = 500;
    Desk desk;
    std::size_t shown = 0;
    for (std::size_t turn = 0; turn < turns; ++turn) {
        // Some photos are passed before anything of them can begin.
        for (std::size_t passed = 0; passed < turn % 4; ++passed) {
            auto const at = (3 * turn + passed) % desk.files.size();
            auto task = desk.loader->loadDisplayImage(desk.files[at], [](ImageRef const&) {});
            desk.loader->prefetchAround(desk.files[at], std::span(desk.files).first(2));
        }
        auto const at = 8 * (turn % 5) + 1 + turn % 7; // one that can be read
        auto const& url = desk.files[at];
        bool isAnswered = false;
        auto const task = desk.loader->loadDisplayImage(url, [&](ImageRef const& image) {
            isAnswered = true;
            shown += image ? 1 : 0;
        });
        desk.loader->prefetchAround(url, { &desk.files[(at + 8) % desk.files.size()], 1 });
        Screen const screen { 1000, 1000, turn % 2 == 0 ? 1.0 : 2.0 };
        desk.loader->updateDisplayPixelSize({ &screen, 1 });
        while (!isAnswered) {
            desk.loop.advance(std::chrono::milliseconds(20));
            std::this_thread::yield();
        }
    }
    CHECK(shown == turns);
}

TEST_CASE("turns may change at any moment, and every load comes to its end")
{
    Desk desk;
    int answered = 0;
    std::vector<Turn> turns(fileCount);
    std::vector<Task> tasks;
    auto const count = static_cast<std::size_t>(fileCount);
    for (std::size_t i = 0; i < count; ++i)
        tasks.push_back(desk.loader->loadThumbnail(
            desk.files[i], 256, turns[i], [](FirstLook const&) {},
            [&](ImageRef const&) { ++answered; }));
    for (std::uint32_t round = 0; answered < fileCount; ++round) {
        for (std::size_t i = 0; i < count; ++i)
            turns[i].set({ static_cast<Turn::Wish>((round + i) % 4), round % 7 });
        desk.loader->turnsChanged();
        desk.loop.settle();
        std::this_thread::yield();
    }
    CHECK(answered == fileCount);
}

TEST_CASE("loads may be under way when the loader goes, or the background before the queues")
{
    for (int round = 0; round < 30; ++round) {
        Desk desk;
        std::vector<Task> tasks;
        for (int i = 0; i < 200; ++i)
            tasks.push_back(desk.load(i, [] {}));
        if (round % 2 == 0)
            desk.loader.reset();
        else
            desk.background.reset();
        desk.displayQueue.reset();
        desk.thumbQueue.reset();
        desk.background.reset();
        desk.loop.settle();
        if (round % 3 == 0)
            tasks.clear();
        desk.loader.reset();
    }
}

TEST_CASE("decodes run side by side, as many as the queue is wide")
{
    Desk desk;
    std::counting_semaphore<> mayGoOn(0);
    std::atomic<int> running = 0;
    desk.decoder.whileDecoding = [&] {
        ++running;
        mayGoOn.acquire();
    };
    std::vector<Task> tasks;
    // Of twelve sizes: a request that comes late finds no picture of its own in memory.
    for (int i = 0; i < 12; ++i)
        tasks.push_back(desk.loader->loadThumbnail(desk.files[1], 256 + i, [](ImageRef const&) {}));
    while (running < 3)
        std::this_thread::yield();
    mayGoOn.release(12);
    while (running < 12)
        std::this_thread::yield();
    desk.thumbQueue.reset();
    CHECK(running == 12);
}
