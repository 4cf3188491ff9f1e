#include "images/LoaderPrefetch.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include "support/FakeBackground.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeLoop.h"
#include "support/FakeWorkQueue.h"
#include <array>
#include <doctest/doctest.h>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

using Paths = std::vector<std::string>;

struct Desk {
    FakeLoop loop;
    FakeBackground background;
    FakeImageDecoder decoder;
    FakeWorkQueue thumbQueue;
    FakeWorkQueue displayQueue;
    ImageLoader loader { { loop, background, decoder, thumbQueue, displayQueue } };
    LoaderPrefetch prefetch { loader };
    std::vector<ImageRef> images; ///< what loads were answered

    Desk()
    {
        for (auto const* path : { "/1", "/2", "/3", "/4", "/5", "/6", "/7" })
            decoder.put(FileUrl(path), {});
    }

    // By somebody who takes their time.
    void prefetchAround(char const* shown, std::initializer_list<char const*> next)
    {
        loop.advance(PagingPace::pause);
        hurryTo(shown, next);
    }

    void hurryTo(char const* shown, std::initializer_list<char const*> next)
    {
        std::vector<FileUrl> urls;
        for (auto const* path : next)
            urls.emplace_back(path);
        prefetch.prefetchDisplay(FileUrl(shown), urls);
    }

    Task load(char const* path)
    {
        auto task = loader.loadDisplayImage(
            FileUrl(path), [this](ImageRef image) { images.push_back(std::move(image)); });
        background.finishAll();
        return task;
    }

    void settle()
    {
        background.finishAll();
        thumbQueue.runAll();
        displayQueue.runAll();
        loop.settle();
    }

    Paths decoded() const
    {
        Paths paths;
        for (auto const& request : decoder.decodes())
            paths.emplace_back(request.file.path());
        return paths;
    }

    bool has(char const* path) const { return loader.cachedDisplayImage(FileUrl(path)) != nullptr; }
};

} // namespace

TEST_CASE("the photo shown and its neighbours come into the display cache, in this order")
{
    Desk desk;
    desk.prefetchAround("/2", { "/3", "/4", "/1" });
    CHECK(desk.thumbQueue.pending() == 0);
    CHECK(desk.decoded().empty()); // nothing is decoded on the caller's thread
    desk.settle();
    CHECK(desk.decoded() == Paths { "/2", "/3", "/4", "/1" });
    CHECK(desk.has("/4"));
    CHECK(desk.decoder.decodes().at(0).maxPixel == 2880);
    CHECK(desk.decoder.decodes().at(0).previews == EmbeddedPreviews::ignore);
}

TEST_CASE("what is in the cache is not decoded again")
{
    Desk desk;
    desk.prefetchAround("/1", { "/2", "/3" });
    desk.settle();
    desk.prefetchAround("/2", { "/3", "/4", "/1" });
    desk.settle();
    CHECK(desk.decoded() == Paths { "/1", "/2", "/3", "/4" });
    desk.prefetchAround("/2", { "/3", "/4", "/1" });
    CHECK(desk.displayQueue.pending() == 0);
}

TEST_CASE("the same photo named twice, or as its own neighbour, is decoded once")
{
    Desk desk;
    desk.prefetchAround("/1", { "/2", "/1", "/2" });
    desk.settle();
    CHECK(desk.decoded() == Paths { "/1", "/2" });
}

TEST_CASE("the viewer gets the picture that was begun for it before it asked")
{
    Desk desk;
    desk.prefetchAround("/2", { "/3" });
    auto const task = desk.load("/2");
    desk.settle();
    REQUIRE(desk.images.size() == 1);
    CHECK(desk.images[0] == desk.loader.cachedDisplayImage(FileUrl("/2")));
    CHECK(desk.decoded() == Paths { "/2", "/3" });
}

TEST_CASE("the viewer gets a neighbour that is being decoded when it asks for it")
{
    Desk desk;
    Task task;
    desk.decoder.whileDecoding = [&] {
        if (desk.decoded().back() == "/3")
            task = desk.load("/3");
    };
    desk.prefetchAround("/2", { "/3" });
    desk.settle();
    REQUIRE(desk.images.size() == 1);
    CHECK(desk.images[0] == desk.loader.cachedDisplayImage(FileUrl("/3")));
    CHECK(desk.decoded() == Paths { "/2", "/3" });
}

TEST_CASE("a neighbour may begin while the photo shown is decoded, whoever asked for it first")
{
    Desk desk;
    std::vector<std::size_t> waiting; // items of the queue, by decode
    desk.decoder.whileDecoding = [&] { waiting.push_back(desk.displayQueue.pending()); };
    Task task;
    SUBCASE("the viewer")
    {
        task = desk.load("/2");
        desk.prefetchAround("/2", { "/3", "/4" });
    }
    SUBCASE("the prefetch")
    {
        desk.prefetchAround("/2", { "/3", "/4" });
        task = desk.load("/2");
    }
    desk.settle();
    CHECK(waiting == std::vector<std::size_t> { 1, 1, 0 });
    CHECK(desk.decoded() == Paths { "/2", "/3", "/4" });
}

TEST_CASE("a photo paged to overtakes prefetches that wait")
{
    Desk desk;
    Task task;
    desk.decoder.whileDecoding = [&] {
        if (desk.decoded().back() == "/2")
            task = desk.load("/5");
    };
    desk.prefetchAround("/1", { "/2", "/3" });
    desk.settle();
    CHECK(desk.decoded() == Paths { "/1", "/2", "/5", "/3" });
}

TEST_CASE("photos that were passed by before their turn are never read")
{
    Desk desk;
    for (auto const* path : { "/1", "/2", "/3", "/4" }) {
        desk.prefetchAround(path, { "/5" });
        auto const passed = desk.load(path);
    }
    desk.prefetchAround("/5", { "/4" });
    auto const task = desk.load("/5");
    CHECK(desk.displayQueue.pending() == 1);
    desk.settle();
    CHECK(desk.decoded() == Paths { "/5", "/4" });
    CHECK(desk.images.size() == 1);
}

TEST_CASE("a load dropped before its turn never reads the file, even if another one asked too")
{
    Desk desk;
    auto first = desk.load("/1");
    auto second = desk.load("/1");
    first.cancel();
    second.cancel();
    desk.settle();
    CHECK(desk.decoded().empty());
    CHECK(desk.images.empty());
}

TEST_CASE("a load that is dropped leaves the picture to the others who wait for it")
{
    Desk desk;
    auto first = desk.load("/1");
    auto const second = desk.load("/1");
    first.cancel();
    desk.settle();
    CHECK(desk.images.size() == 1);
    CHECK(desk.decoded().size() == 1);
}

TEST_CASE("full pictures that are asked for at once are decoded once and given to all")
{
    Desk desk;
    std::vector<Task> tasks;
    for (int i = 0; i < 5; ++i)
        tasks.push_back(desk.loader.loadFullImage(
            FileUrl("/1"), [&](ImageRef image) { desk.images.push_back(std::move(image)); }));
    desk.settle();
    CHECK(desk.decoded().size() == 1);
    REQUIRE(desk.images.size() == 5);
    CHECK(desk.images.front() == desk.images.back());
    CHECK_FALSE(desk.has("/1"));
}

TEST_CASE("a full picture that nobody waits for any more is freed off the main thread")
{
    Desk desk;
    auto task = desk.loader.loadFullImage(FileUrl("/1"), [](ImageRef const&) {});
    desk.decoder.whileDecoding = [&] { task.cancel(); };
    desk.background.finishAll();
    desk.displayQueue.runAll();
    CHECK(desk.decoded().size() == 1);
    CHECK_FALSE(desk.decoder.isLastAlive());
}

TEST_CASE("a picture that cannot be read is told to all who wait, and its neighbours follow")
{
    Desk desk;
    desk.decoder.remove(FileUrl("/1"));
    desk.prefetchAround("/1", { "/2" });
    auto const first = desk.load("/1");
    auto const second = desk.load("/1");
    desk.settle();
    CHECK(desk.images == std::vector<ImageRef> { nullptr, nullptr });
    CHECK(desk.decoded() == Paths { "/1", "/2" });
}

TEST_CASE("a photo that is known to be an animation is not made a still picture")
{
    Desk desk;
    desk.decoder.put(FileUrl("/1"), { { PixelSize { 4, 3 }, true } });
    CHECK(desk.loader.cachedMeta(FileUrl("/1")));
    desk.prefetchAround("/1", { "/2" });
    desk.settle();
    CHECK(desk.decoded() == Paths { "/2" });
}

TEST_CASE("after a change of screens a picture that is being decoded for the old ones is not taken")
{
    Desk desk;
    Task task;
    desk.decoder.whileDecoding = [&] {
        if (desk.decoded().size() > 1)
            return;
        std::array const screens { Screen { 3840, 2160, 1 } };
        desk.loader.updateDisplayPixelSize(screens);
        task = desk.load("/1");
    };
    desk.prefetchAround("/1", {});
    desk.settle();
    CHECK(desk.decoder.decodes().at(1).maxPixel == 3840);
    CHECK(desk.images.size() == 1);
    CHECK(desk.has("/1"));
}

TEST_CASE("in a hurry that decoding keeps up with every photo is decoded")
{
    Desk desk;
    desk.prefetchAround("/1", { "/2", "/3" });
    desk.settle();
    for (auto const* path : { "/4", "/5", "/6", "/7" }) {
        desk.hurryTo(path, {});
        auto const task = desk.load(path);
        desk.settle();
        CHECK(desk.has(path));
    }
    CHECK(desk.images.size() == 4);
}

TEST_CASE("in a hurry that decoding does not keep up with thumbnails are made of what comes")
{
    Desk desk;
    Task task;
    desk.decoder.whileDecoding = [&] {
        if (desk.decoded() == Paths { "/1" }) {
            desk.hurryTo("/2", { "/3", "/4", "/1" });
            desk.hurryTo("/3", { "/4", "/5", "/2" });
        }
    };
    desk.prefetchAround("/1", { "/2", "/3" });
    desk.settle();
    CHECK(desk.has("/1")); // it had begun
    desk.settle();
    CHECK(desk.decoded() == Paths { "/1", "/3", "/4" }); // two at a time
    CHECK(desk.decoder.decodes().back().maxPixel == 512);
    CHECK(desk.loader.largestCachedThumbnail(FileUrl("/4")));
    task = desk.load("/4");
    desk.hurryTo("/4", { "/5", "/6", "/3" });
    desk.settle();
    desk.hurryTo("/4", { "/5", "/6", "/3" });
    desk.settle();
    CHECK(desk.decoded() == Paths { "/1", "/3", "/4", "/5", "/6" }); // each once
    CHECK_FALSE(desk.has("/4"));
    CHECK(desk.images.empty());
    desk.loop.advance(PagingPace::pause);
    desk.settle();
    CHECK(desk.decoded() == Paths { "/1", "/3", "/4", "/5", "/6", "/4", "/5", "/6", "/3" });
    CHECK(desk.has("/4"));
    CHECK(desk.images.size() == 1);
}

TEST_CASE("what waited when a hurry began is not begun by its end")
{
    Desk desk;
    desk.prefetchAround("/1", { "/2" });
    desk.decoder.whileDecoding = [&] {
        if (desk.decoded() == Paths { "/1" }) {
            desk.hurryTo("/3", { "/4" });
            desk.hurryTo("/4", { "/5" });
        }
    };
    desk.settle();
    CHECK(desk.has("/1"));
    CHECK_FALSE(desk.has("/2"));
    CHECK_FALSE(desk.has("/4"));
    desk.loop.advance(PagingPace::pause);
    desk.settle();
    CHECK(desk.has("/4"));
    CHECK_FALSE(desk.has("/2"));
    CHECK_FALSE(desk.has("/3"));
}

TEST_CASE("an arrow key that is held while the decoder is slow leaves the last photo's work alone")
{
    constexpr int count = 400;
    constexpr std::size_t width = 3;
    FakeLoop loop;
    FakeImageDecoder decoder;
    std::counting_semaphore<> mayGoOn(0);
    decoder.whileDecoding = [&] { mayGoOn.acquire(); };
    ThreadPool background;
    ThreadQueue thumbQueue(1);
    ThreadQueue displayQueue(width);
    ImageLoader loader({ loop, background, decoder, thumbQueue, displayQueue });
    auto const url = [](int i) { return FileUrl("/" + std::to_string(i)); };
    for (int i = 0; i < count; ++i)
        decoder.put(url(i), {});
    int answered = -1;
    Task task;
    for (int i = 0; i < count; ++i) {
        std::array const next { url(i + 1), url(i + 2), url(i - 1) };
        loader.prefetchAround(url(i), next);
        task = loader.loadDisplayImage(url(i), [&answered, i](ImageRef const&) { answered = i; });
        loop.settle();
    }
    mayGoOn.release(count);
    loop.advance(PagingPace::pause);
    while (answered != count - 1) {
        loop.settle();
        std::this_thread::yield();
    }
    std::size_t large = 0;
    for (auto const& request : decoder.decodes())
        large += request.maxPixel == defaultDisplayPixelSize ? 1 : 0;
    constexpr std::size_t begunBefore = width;
    constexpr std::size_t shownAndNeighbours = 4;
    CHECK(large <= begunBefore + shownAndNeighbours);
    CHECK(loader.cachedDisplayImage(url(count - 1)));
}
