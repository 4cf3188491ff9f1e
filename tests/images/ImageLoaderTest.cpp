#include "images/ImageLoader.h"
#include "images/LoaderCore.h"
#include "support/FakeBackground.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeLoop.h"
#include "support/FakeWorkQueue.h"
#include <array>
#include <cstring>
#include <doctest/doctest.h>
#include <memory>

using namespace pixelhain;

namespace {

/// A loader among fakes, and two files: one picture and one that is missing.
struct Desk {
    FakeLoop loop;
    FakeBackground background;
    FakeImageDecoder decoder;
    FakeWorkQueue thumbQueue;
    FakeWorkQueue displayQueue;
    ImageLoader::Services services { loop, background, decoder, thumbQueue, displayQueue };
    ImageLoader loader { services };
    FileUrl const photo { "/photos/a.jpg" };
    FileUrl const missing { "/photos/gone.jpg" };

    std::vector<ImageRef> images;
    std::vector<std::optional<ImageMeta>> metas;

    Desk() { decoder.put(photo, { { PixelSize { 40, 30 }, false } }); }

    ImageLoader::ImageDone keepImage()
    {
        return [this](ImageRef image) { images.push_back(std::move(image)); };
    }
    ImageLoader::MetaDone keepMeta()
    {
        return [this](std::optional<ImageMeta> meta) { metas.push_back(meta); };
    }
    void settle()
    {
        background.finishAll();
        thumbQueue.runAll();
        displayQueue.runAll();
        loop.settle();
    }
};

} // namespace

TEST_CASE("an image's key is its size, a bar and the path")
{
    CHECK(imageKey(512, FileUrl("/Users/a/Bilder/IMG_1.jpg")) == "512|/Users/a/Bilder/IMG_1.jpg");
    CHECK(imageKey(96, FileUrl("/a%20\xFF b.jpg")) == "96|/a%20\xFF b.jpg");
}

TEST_CASE("a thumbnail is decoded with previews preferred, delivered and cached")
{
    Desk desk;
    auto const task = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.settle();
    REQUIRE(desk.images.size() == 1);
    REQUIRE(desk.images[0]);
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256) == desk.images[0]);
    auto const asked = desk.decoder.decodes();
    REQUIRE(asked.size() == 1);
    CHECK(asked[0].file == desk.photo);
    CHECK(asked[0].maxPixel == 256);
    CHECK(asked[0].previews == EmbeddedPreviews::prefer);
}

TEST_CASE("the caller's thread neither looks up nor decodes nor delivers")
{
    Desk desk;
    auto const task = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    CHECK(desk.background.pending() == 1);
    CHECK(desk.thumbQueue.pending() == 0);
    desk.background.finishAll();
    CHECK(desk.thumbQueue.pending() == 1);
    CHECK(desk.decoder.decodes().empty());
    desk.thumbQueue.runAll();
    CHECK(desk.images.empty());
    desk.loop.settle();
    CHECK(desk.images.size() == 1);
}

TEST_CASE("a cached thumbnail is delivered without a work item")
{
    Desk desk;
    auto const first = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.settle();
    auto const second = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.background.finishAll();
    CHECK(desk.thumbQueue.pending() == 0);
    desk.loop.settle();
    REQUIRE(desk.images.size() == 2);
    CHECK(desk.images[0] == desk.images[1]);
    CHECK(desk.decoder.decodes().size() == 1);
}

TEST_CASE("one file at two sizes occupies two entries")
{
    Desk desk;
    auto const small = desk.loader.loadThumbnail(desk.photo, 128, desk.keepImage());
    desk.settle();
    CHECK(desk.loader.cachedThumbnail(desk.photo, 128));
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256) == nullptr);
    auto const large = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.settle();
    CHECK(desk.loader.cachedThumbnail(desk.photo, 128));
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256));
}

TEST_CASE("a thumbnail cancelled before its item starts delivers none and leaves the cache alone")
{
    Desk desk;
    auto task = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    SUBCASE("before the look-up")
    {
        task.cancel();
    }
    SUBCASE("before the item starts")
    {
        desk.background.finishAll();
        task.cancel();
        CHECK(desk.thumbQueue.pending() == 1);
    }
    desk.settle();
    CHECK(desk.images.empty());
    CHECK(desk.decoder.decodes().empty());
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256) == nullptr);
}

TEST_CASE("a load cancelled while it decodes fills the cache and tells nobody")
{
    Desk desk;
    auto task = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.decoder.whileDecoding = [&] { task.cancel(); };
    desk.settle();
    CHECK(desk.images.empty());
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256));
}

TEST_CASE("a load cancelled after its result was posted tells nobody")
{
    Desk desk;
    auto task = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.background.finishAll();
    desk.thumbQueue.runAll();
    task.cancel();
    desk.loop.settle();
    CHECK(desk.images.empty());
}

TEST_CASE("cancelling frees what the caller waited with at once")
{
    Desk desk;
    auto const held = std::make_shared<int>(1);
    auto task = desk.loader.loadThumbnail(desk.photo, 256, [held](ImageRef const&) {});
    CHECK(held.use_count() == 2);
    task.cancel();
    CHECK(held.use_count() == 1);
}

TEST_CASE("a caller may drop its task while it is told")
{
    Desk desk;
    Task task;
    task = desk.loader.loadThumbnail(desk.photo, 256, [&](ImageRef const&) { task.cancel(); });
    desk.settle();
    CHECK_FALSE(task);
}

TEST_CASE("two requests for the same uncached picture both decode")
{
    Desk desk;
    auto const first = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    auto const second = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.settle();
    CHECK(desk.decoder.decodes().size() == 2);
    REQUIRE(desk.images.size() == 2);
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256) == desk.images[1]);
}

TEST_CASE("a failed picture is delivered as none and tried again next time")
{
    Desk desk;
    auto const first = desk.loader.loadThumbnail(desk.missing, 256, desk.keepImage());
    desk.settle();
    REQUIRE(desk.images.size() == 1);
    CHECK(desk.images[0] == nullptr);
    desk.decoder.put(desk.missing, {});
    auto const second = desk.loader.loadThumbnail(desk.missing, 256, desk.keepImage());
    desk.settle();
    REQUIRE(desk.images.size() == 2);
    CHECK(desk.images[1]);
}

TEST_CASE("a thumbnail in steps: a look that tells the metadata and a small picture, then itself")
{
    Desk desk;
    desk.decoder.put(
        desk.photo, { .meta = { PixelSize { 40, 30 }, false }, .embedded = { 16, 12 } });
    std::vector<FirstLook> looks;
    auto const keepLook = [&](FirstLook const& look) { looks.push_back(look); };
    auto const task
        = desk.loader.loadThumbnail(desk.photo, 256, Turn(), keepLook, desk.keepImage());
    desk.background.finishAll();
    CHECK(desk.thumbQueue.pending() == 1);
    desk.thumbQueue.runNext();
    desk.loop.settle();
    REQUIRE(looks.size() == 1);
    CHECK(looks[0].meta == ImageMeta { PixelSize { 40, 30 }, false });
    REQUIRE(looks[0].embedded);
    CHECK(looks[0].embedded->image.size == PixelSize { 16, 12 });
    CHECK(looks[0].embedded->origin == PixelOrigin::embedded);
    CHECK(desk.loader.knownMeta(desk.photo) == looks[0].meta);
    CHECK_FALSE(desk.loader.cachedThumbnail(desk.photo, 256));
    CHECK(desk.decoder.decodes().empty());
    CHECK(desk.images.empty());
    CHECK(desk.thumbQueue.pending() == 1);
    desk.settle();
    REQUIRE(desk.images.size() == 1);
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256) == desk.images[0]);
    CHECK(looks.size() == 1);
    CHECK(desk.decoder.glances().size() == 1);
    CHECK(desk.decoder.metaReads().empty());
}

TEST_CASE("a thumbnail in memory comes without a look")
{
    Desk desk;
    auto const first = desk.loader.loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.settle();
    int looks = 0;
    auto const second = desk.loader.loadThumbnail(
        desk.photo, 256, Turn(), [&](FirstLook const&) { ++looks; }, desk.keepImage());
    desk.settle();
    CHECK(looks == 0);
    CHECK(desk.images.size() == 2);
    CHECK(desk.decoder.glances().empty());
}

TEST_CASE("a file that cannot be looked into is tried to be decoded")
{
    Desk desk;
    std::vector<FirstLook> looks;
    auto const task = desk.loader.loadThumbnail(
        desk.missing, 256, Turn(), [&](FirstLook const& look) { looks.push_back(look); },
        desk.keepImage());
    desk.settle();
    REQUIRE(looks.size() == 1);
    CHECK_FALSE(looks[0].meta);
    CHECK_FALSE(looks[0].embedded);
    REQUIRE(desk.images.size() == 1);
    CHECK_FALSE(desk.images[0]);
    CHECK(desk.decoder.decodes().size() == 1);
}

TEST_CASE("all files are looked into before one is decoded, and those with previews come first")
{
    Desk desk;
    std::vector<FileUrl> const urls { FileUrl("/slow"), FileUrl("/quick"), FileUrl("/later") };
    std::vector<Task> tasks;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        desk.decoder.put(urls[i], { .isQuick = urls[i].name() == "quick" });
        Turn const turn;
        turn.set({ Turn::Wish::load, static_cast<std::uint32_t>(i) });
        tasks.push_back(desk.loader.loadThumbnail(
            urls[i], 256, turn, [](FirstLook const&) {}, desk.keepImage()));
    }
    desk.background.finishAll();
    for (std::size_t i = 0; i < urls.size(); ++i) {
        CHECK(desk.decoder.decodes().empty());
        desk.thumbQueue.runNext();
    }
    CHECK(desk.decoder.glances() == urls);
    desk.settle();
    auto const asked = desk.decoder.decodes();
    REQUIRE(asked.size() == 3);
    CHECK(asked[0].file.name() == "quick");
    CHECK(asked[1].file.name() == "slow");
    CHECK(asked[2].file.name() == "later");
}

TEST_CASE("no picture is decoded while files in view wait to be looked up")
{
    Desk desk;
    FileUrl const other("/photos/b.jpg");
    desk.decoder.put(other, {});
    auto const load = [&](FileUrl const& url, std::uint32_t rank) {
        Turn const turn;
        turn.set({ Turn::Wish::load, rank });
        return desk.loader.loadThumbnail(
            url, 256, turn, [](FirstLook const&) {}, desk.keepImage());
    };
    auto const first = load(desk.photo, 0);
    auto second = load(other, 1);
    desk.background.finish(0);
    desk.thumbQueue.runAll();
    CHECK(desk.decoder.glances().size() == 1);
    CHECK(desk.decoder.decodes().empty());
    SUBCASE("they are looked up")
    {
        desk.background.finishAll();
        desk.thumbQueue.runNext();
        CHECK(desk.decoder.glances().size() == 2);
        CHECK(desk.decoder.decodes().empty());
        desk.settle();
        CHECK(desk.images.size() == 2);
    }
    SUBCASE("they are dropped")
    {
        second.cancel();
        desk.settle();
        CHECK(desk.images.size() == 1);
    }
}

TEST_CASE("a load whose turn is put off begins when it is its turn again")
{
    Desk desk;
    Turn const turn;
    turn.set({ Turn::Wish::nothing, 0 });
    auto const task = desk.loader.loadThumbnail(
        desk.photo, 256, turn, [](FirstLook const&) {}, desk.keepImage());
    desk.settle();
    CHECK(desk.decoder.glances().empty());
    turn.set({ Turn::Wish::glance, 0 });
    desk.loader.turnsChanged();
    desk.settle();
    CHECK(desk.decoder.glances().size() == 1);
    CHECK(desk.decoder.decodes().empty());
    turn.set({ Turn::Wish::load, 0 });
    desk.loader.turnsChanged();
    desk.settle();
    CHECK(desk.images.size() == 1);
}

TEST_CASE("a load in steps that is dropped goes no further, and what it held is freed at once")
{
    Desk desk;
    auto const held = std::make_shared<int>(1);
    auto task = desk.loader.loadThumbnail(
        desk.photo, 256, Turn(), [held](FirstLook const&) {}, [held](ImageRef const&) {});
    desk.background.finishAll();
    SUBCASE("before the look") { }
    SUBCASE("after the look")
    {
        desk.thumbQueue.runNext();
    }
    CHECK(held.use_count() == 3);
    task.cancel();
    CHECK(held.use_count() == 1);
    desk.settle();
    CHECK(desk.decoder.decodes().empty());
    CHECK(desk.thumbQueue.pending() == 0);
}

TEST_CASE("a decode that ends after its cell has gone stays in memory")
{
    Desk desk;
    auto task = desk.loader.loadThumbnail(
        desk.photo, 256, Turn(), [](FirstLook const&) {}, desk.keepImage());
    desk.decoder.whileDecoding = [&] { task.cancel(); };
    desk.settle();
    CHECK(desk.images.empty());
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256));
}

TEST_CASE("the largest thumbnail in memory is found whatever its size")
{
    Desk desk;
    CHECK_FALSE(desk.loader.largestCachedThumbnail(desk.photo));
    auto const small = desk.loader.loadThumbnail(desk.photo, 128, desk.keepImage());
    desk.settle();
    CHECK(desk.loader.largestCachedThumbnail(desk.photo) == desk.images.at(0));
    auto const large = desk.loader.loadThumbnail(desk.photo, 640, desk.keepImage());
    desk.settle();
    CHECK(desk.loader.largestCachedThumbnail(desk.photo) == desk.images.at(1));
}

TEST_CASE("metadata is read once and remembered")
{
    Desk desk;
    CHECK_FALSE(desk.loader.knownMeta(desk.photo));
    auto const first = desk.loader.loadMeta(desk.photo, desk.keepMeta());
    desk.settle();
    auto const second = desk.loader.loadMeta(desk.photo, desk.keepMeta());
    desk.settle();
    REQUIRE(desk.metas.size() == 2);
    CHECK(desk.metas[0] == ImageMeta { PixelSize { 40, 30 }, false });
    CHECK(desk.metas[1] == desk.metas[0]);
    CHECK(desk.loader.knownMeta(desk.photo) == desk.metas[0]);
    CHECK(desk.loader.cachedMeta(desk.photo) == desk.metas[0]);
    CHECK(desk.decoder.metaReads().size() == 1);
}

TEST_CASE("metadata that became known while its load waited is not read again")
{
    Desk desk;
    auto const task = desk.loader.loadMeta(desk.photo, desk.keepMeta());
    desk.background.finishAll();
    CHECK(desk.loader.cachedMeta(desk.photo));
    desk.settle();
    CHECK(desk.metas.size() == 1);
    CHECK(desk.decoder.metaReads().size() == 1);
}

TEST_CASE("metadata that cannot be read is not remembered")
{
    Desk desk;
    CHECK_FALSE(desk.loader.cachedMeta(desk.missing));
    CHECK_FALSE(desk.loader.cachedMeta(desk.missing));
    CHECK(desk.decoder.metaReads().size() == 2);
    auto const task = desk.loader.loadMeta(desk.missing, desk.keepMeta());
    desk.settle();
    REQUIRE(desk.metas.size() == 1);
    CHECK_FALSE(desk.metas[0]);
}

TEST_CASE("remembered metadata does not keep a folder's names in memory")
{
    Desk desk;
    std::string_view const path = "/photos/a.jpg";
    SharedBytes const names(path.size() + 1);
    std::memcpy(names.data(), path.data(), path.size() + 1);
    {
        FileUrl const url(names, { names.data(), path.size() });
        CHECK(desk.loader.cachedMeta(url));
    }
    // The fake decoder remembers the URL that it was asked for; the cache must not.
    CHECK(desk.loader.knownMeta(desk.photo));
    CHECK(names.owners() == 2);
}

TEST_CASE("display images go through their own queue at the display size, without previews")
{
    Desk desk;
    auto const task = desk.loader.loadDisplayImage(desk.photo, desk.keepImage());
    desk.background.finishAll();
    CHECK(desk.background.lastPriority == Priority::userInteractive);
    CHECK(desk.thumbQueue.pending() == 0);
    CHECK(desk.displayQueue.pending() == 1);
    desk.settle();
    auto const asked = desk.decoder.decodes();
    REQUIRE(asked.size() == 1);
    CHECK(asked[0].maxPixel == 2880);
    CHECK(asked[0].previews == EmbeddedPreviews::ignore);
    REQUIRE(desk.images.size() == 1);
    CHECK(desk.loader.cachedDisplayImage(desk.photo) == desk.images[0]);
}

TEST_CASE("after a change of screens old display images are no longer hit")
{
    Desk desk;
    desk.loader.prefetchDisplay(desk.photo);
    CHECK(desk.loader.cachedDisplayImage(desk.photo));
    std::array const screens { Screen { 3840, 2160, 1 } };
    desk.loader.updateDisplayPixelSize(screens);
    CHECK(desk.loader.displayPixelSize() == 3840);
    CHECK(desk.loader.cachedDisplayImage(desk.photo) == nullptr);
    desk.loader.updateDisplayPixelSize({});
    CHECK(desk.loader.displayPixelSize() == 2880);
    CHECK(desk.loader.cachedDisplayImage(desk.photo));
}

TEST_CASE("a display image is decoded to the size of the moment when its item starts")
{
    Desk desk;
    auto const task = desk.loader.loadDisplayImage(desk.photo, desk.keepImage());
    desk.background.finishAll();
    std::array const screens { Screen { 1920, 1080, 1 } };
    desk.loader.updateDisplayPixelSize(screens);
    desk.settle();
    CHECK(desk.decoder.decodes().at(0).maxPixel == 1920);
    CHECK(desk.loader.cachedDisplayImage(desk.photo));
}

TEST_CASE("a prefetch decodes unless the display image is there")
{
    Desk desk;
    desk.loader.prefetchDisplay(desk.photo);
    desk.loader.prefetchDisplay(desk.photo);
    CHECK(desk.decoder.decodes().size() == 1);
    desk.loader.prefetchDisplay(desk.missing);
    desk.loader.prefetchDisplay(desk.missing);
    CHECK(desk.decoder.decodes().size() == 3);
}

TEST_CASE("the full image is decoded as large as the picture, and never cached")
{
    Desk desk;
    auto const first = desk.loader.loadFullImage(desk.photo, desk.keepImage());
    desk.settle();
    auto const second = desk.loader.loadFullImage(desk.photo, desk.keepImage());
    desk.background.finishAll();
    CHECK(desk.displayQueue.pending() == 1);
    desk.settle();
    CHECK(desk.images.size() == 2);
    auto const asked = desk.decoder.decodes();
    REQUIRE(asked.size() == 2);
    CHECK(asked[0].maxPixel == 0);
    CHECK(asked[0].previews == EmbeddedPreviews::ignore);
    CHECK(desk.loader.cachedDisplayImage(desk.photo) == nullptr);
}

TEST_CASE("at most 30 display images are kept")
{
    Desk desk;
    for (int i = 0; i <= 30; ++i) {
        FileUrl const url("/photos/" + std::to_string(i));
        desk.decoder.put(url, {});
        desk.loader.prefetchDisplay(url);
    }
    CHECK(desk.loader.cachedDisplayImage(FileUrl("/photos/0")) == nullptr);
    CHECK(desk.loader.cachedDisplayImage(FileUrl("/photos/1")));
    CHECK(desk.loader.cachedDisplayImage(FileUrl("/photos/30")));
}

TEST_CASE("images cost their bytes per row times their height")
{
    Desk desk;
    ImageLoader::Limits limits;
    limits.displays = { grayBitmap({ 5, 7 }).bytesPerRow * 7 * 2, std::nullopt };
    ImageLoader loader(desk.services, limits);
    for (auto const* path : { "/1", "/2", "/3" }) {
        desk.decoder.put(FileUrl(path), { {}, { 5, 7 } });
        loader.prefetchDisplay(FileUrl(path));
    }
    CHECK(loader.cachedDisplayImage(FileUrl("/1")) == nullptr);
    CHECK(loader.cachedDisplayImage(FileUrl("/2")));
    CHECK(loader.cachedDisplayImage(FileUrl("/3")));
}

TEST_CASE("the caches have 700 and 900 MiB")
{
    ImageLoader::Limits const limits;
    CHECK(limits.thumbs.cost == 734'003'200);
    CHECK_FALSE(limits.thumbs.count);
    CHECK(limits.displays.cost == 943'718'400);
    CHECK(limits.displays.count == 30);
}

TEST_CASE("a direct decode passes all caches")
{
    Desk desk;
    CHECK(desk.loader.decodeImage(desk.photo, 256, EmbeddedPreviews::prefer));
    CHECK(desk.loader.decodeImage(desk.missing, 256, EmbeddedPreviews::prefer) == nullptr);
    CHECK(desk.loader.cachedThumbnail(desk.photo, 256) == nullptr);
    CHECK(desk.loader.readMeta(desk.photo));
    CHECK_FALSE(desk.loader.knownMeta(desk.photo));
}

TEST_CASE("metadata and previews that are wanted now wait for no queue")
{
    Desk desk;
    auto const meta = desk.loader.loadMetaNow(desk.photo, desk.keepMeta());
    auto const preview = desk.loader.loadPreviewNow(desk.photo, desk.keepImage());
    CHECK(desk.decoder.metaReads().empty());
    desk.background.finishAll();
    CHECK(desk.thumbQueue.pending() + desk.displayQueue.pending() == 0);
    desk.loop.settle();
    REQUIRE(desk.metas.size() == 1);
    CHECK(desk.metas[0]->size == PixelSize { 40, 30 });
    CHECK(desk.loader.knownMeta(desk.photo));
    REQUIRE(desk.images.size() == 1);
    CHECK(desk.images[0]);
    REQUIRE(desk.decoder.decodes().size() == 1);
    CHECK(desk.decoder.decodes()[0].maxPixel == desk.loader.displayPixelSize());
    CHECK(desk.decoder.decodes()[0].previews == EmbeddedPreviews::only);
}

TEST_CASE("what is wanted now touches no file when the loader has gone, nor the loader")
{
    Desk desk;
    auto loader = std::make_unique<ImageLoader>(desk.services);
    auto const meta = loader->loadMetaNow(desk.photo, desk.keepMeta());
    auto const preview = loader->loadPreviewNow(desk.photo, desk.keepImage());
    loader.reset();
    desk.background.finishAll();
    desk.loop.settle();
    CHECK(desk.decoder.metaReads().empty());
    CHECK(desk.decoder.decodes().empty());
    REQUIRE(desk.metas.size() == 1);
    CHECK_FALSE(desk.metas[0]);
    REQUIRE(desk.images.size() == 1);
    CHECK_FALSE(desk.images[0]);
}

TEST_CASE("work that is under way when the loader goes ends quietly")
{
    FakeLoop loop;
    FakeBackground background;
    FakeImageDecoder decoder;
    FileUrl const photo("/photos/a.jpg");
    decoder.put(photo, {});
    auto thumbs = std::make_unique<FakeWorkQueue>();
    auto displays = std::make_unique<FakeWorkQueue>();
    auto loader = std::make_unique<ImageLoader>(
        ImageLoader::Services { loop, background, decoder, *thumbs, *displays });
    bool told = false;
    auto const done = [&](ImageRef const&) { told = true; };

    auto const queued = loader->loadThumbnail(photo, 256, done);
    background.finishAll();
    auto const waiting = loader->loadThumbnail(photo, 128, done);
    SUBCASE("the loader goes first, and its queues finish what they have")
    {
        loader.reset();
        thumbs->runAll();
        CHECK(decoder.decodes().empty());
        thumbs.reset();
    }
    SUBCASE("the queues go first")
    {
        thumbs.reset();
        loader.reset();
    }
    displays.reset();
    background.finishAll();
    loop.settle();
    CHECK_FALSE(told);
}

TEST_CASE("a result that was posted before the loader went is still delivered")
{
    Desk desk;
    auto loader = std::make_unique<ImageLoader>(desk.services);
    auto const task = loader->loadThumbnail(desk.photo, 256, desk.keepImage());
    desk.background.finishAll();
    desk.thumbQueue.runAll();
    loader.reset();
    desk.loop.settle();
    CHECK(desk.images.size() == 1);
}
