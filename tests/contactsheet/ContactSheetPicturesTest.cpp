#include "SheetDesk.h"
#include "posix/ThreadQueue.h"
#include <doctest/doctest.h>
#include <utility>

using namespace pixelhain;

TEST_CASE("pictures come in the order of the photos, whichever is made first")
{
    SheetDesk desk;
    ThreadQueue threads(4);
    auto const photos = desk.photos(200);
    for (std::size_t i = 0; i < photos.size(); ++i)
        desk.decoder.put(photos[i].url, { {}, { static_cast<int>(i) + 1, 1 } });
    ContactSheetPictures pictures({ desk.loader, threads, 4, desk.pdf }, photos, 300);
    for (std::size_t i = 0; i < photos.size(); ++i)
        REQUIRE(pictures.next().size.width == static_cast<int>(i) + 1);
}

TEST_CASE("a photo that cannot be read comes empty, and those after it still come")
{
    SheetDesk desk;
    auto const photos = desk.photos(3);
    desk.decoder.remove(photos[1].url);
    ContactSheetPictures pictures(desk.services, photos, 300);
    CHECK(pictures.next());
    CHECK_FALSE(pictures.next());
    CHECK(pictures.next());
}

TEST_CASE("what is made ahead is bounded, however many photos there are")
{
    SheetDesk desk;
    auto const photos = desk.photos(1000);
    ContactSheetPictures pictures(desk.services, photos, 300);
    CHECK(pictures.next());
    auto const ahead = desk.decoder.decodes().size();
    CHECK(ahead > 2);
    CHECK(ahead < 20);
    CHECK(pictures.next());
    CHECK(desk.decoder.decodes().size() == ahead + 1);
}

TEST_CASE("a JPEG that is small enough is not coded anew")
{
    SheetDesk desk;
    auto const photos = desk.photos(2);
    auto const bytes = std::make_shared<std::vector<std::uint8_t> const>(17);
    desk.decoder.put(photos[0].url, { {}, { 4, 3 }, {}, { { 200, 150 }, bytes } });
    ContactSheetPictures pictures(desk.services, photos, 300);
    auto const passed = pictures.next();
    CHECK(passed.jpeg == bytes);
    CHECK(passed.size == PixelSize { 200, 150 });
    CHECK(pictures.next().jpeg != bytes);
}

TEST_CASE("thumbnails in memory are not made again, and others are not kept")
{
    SheetDesk desk;
    auto const photos = desk.photos(2);
    FakeWorkQueue queue;
    ImageLoader loader({ desk.loop, desk.background, desk.decoder, queue, queue });
    auto const load = loader.loadThumbnail(photos[0].url, 300, [](ImageRef const&) {});
    desk.background.finishAll();
    queue.runAll();
    REQUIRE(loader.cachedThumbnail(photos[0].url, 300));
    REQUIRE(desk.decoder.decodes().size() == 1);

    ContactSheetPictures pictures({ loader, desk.queue, 2, desk.pdf }, photos, 300);
    CHECK(pictures.next());
    CHECK(pictures.next());
    REQUIRE(desk.decoder.decodes().size() == 2);
    CHECK(desk.decoder.decodes()[1].file == photos[1].url);
    CHECK_FALSE(loader.cachedThumbnail(photos[1].url, 300));
}

TEST_CASE("items that begin after the end touch nothing")
{
    SheetDesk desk;
    auto const photos = desk.photos(3);
    FakeWorkQueue late;
    {
        ImmediateQueue first;
        struct OneNow final : WorkQueue {
            WorkQueue& now;
            WorkQueue& later;
            bool isFirst = true;
            OneNow(WorkQueue& a, WorkQueue& b)
                : now(a)
                , later(b)
            {
            }
            void add(std::function<void()> item) override
            {
                (std::exchange(isFirst, false) ? now : later).add(std::move(item));
            }
        } queue(first, late);
        ContactSheetPictures pictures({ desk.loader, queue, 2, desk.pdf }, photos, 300);
        CHECK(pictures.next());
    }
    late.runAll();
    CHECK(desk.decoder.decodes().size() == 1);
}
