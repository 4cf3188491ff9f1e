#include "window/ThumbnailCellLoads.h"
#include "support/FakeThumbnails.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

FileUrl const photo("/b/1.jpg");
FileUrl const other("/b/2.jpg");

// A cell of its own with what it says it was told. Request 0 is the photo's thumbnail with a look
// into the file.
struct Cell {
    FakeThumbnails source;
    int changes = 0;
    ThumbnailCellLoads loads { source, [this] { ++changes; } };
};

} // namespace

TEST_CASE("a new cell asks for its thumbnail with a look into the file, and shows what comes")
{
    Cell cell;
    cell.loads.show(photo, 256);
    REQUIRE(cell.source.requests.size() == 1);
    CHECK(cell.source.requests[0].maxPixel == 256);
    CHECK(cell.source.requests[0].looked);
    CHECK_FALSE(cell.loads.image());
    CHECK_FALSE(cell.loads.failed());
    CHECK_FALSE(cell.loads.isSettled());
    cell.source.answerLook(0, { ImageMeta { PixelSize { 6000, 4000 }, false }, nullptr });
    CHECK(cell.loads.meta()->size == PixelSize { 6000, 4000 });
    CHECK(cell.changes == 1);
    auto const image = pictureOf(256, 171);
    cell.source.answer(0, image);
    CHECK(cell.loads.image() == image);
    CHECK(cell.loads.isSettled());
    CHECK(cell.changes == 2);
    CHECK(cell.source.requests.size() == 1);
}

TEST_CASE(
    "the small picture of a first look is seen until the thumbnail comes, and is still loading")
{
    Cell cell;
    auto const small = pictureOf(160, 107);
    cell.loads.show(photo, 256);
    cell.source.answerLook(0, { std::nullopt, small });
    CHECK(cell.loads.embedded() == small);
    CHECK_FALSE(cell.loads.image());
    CHECK_FALSE(cell.loads.isSettled());
    CHECK_FALSE(cell.loads.failed());
    cell.source.answer(0, pictureOf(256, 171));
    CHECK(cell.loads.image());
    CHECK_FALSE(cell.loads.embedded());
}

TEST_CASE("a photo that turns out to have no picture shows its small one no longer")
{
    Cell cell;
    cell.loads.show(photo, 256);
    cell.source.answerLook(0, { std::nullopt, pictureOf(160, 107) });
    cell.source.answer(0, nullptr);
    CHECK(cell.loads.failed());
    CHECK_FALSE(cell.loads.embedded());
    cell.loads.show(photo, 512);
    CHECK_FALSE(cell.source.requests.back().looked);
    CHECK_FALSE(cell.loads.embedded());
}

TEST_CASE("a small picture that is there stays while another size is loaded")
{
    Cell cell;
    auto const small = pictureOf(160, 107);
    cell.loads.show(photo, 256);
    cell.source.answerLook(0, { ImageMeta { PixelSize { 6, 4 }, false }, small });
    cell.loads.show(photo, 384);
    CHECK(cell.loads.embedded() == small);
    CHECK_FALSE(cell.source.requests[1].looked);
    cell.loads.show(other, 384);
    CHECK_FALSE(cell.loads.embedded());
}

TEST_CASE("a thumbnail that comes without a look has its metadata asked for by itself")
{
    Cell cell;
    cell.loads.show(photo, 256);
    cell.source.answer(0, pictureOf(256, 171));
    REQUIRE(cell.source.requests.size() == 2);
    CHECK(cell.source.requests[1].maxPixel == 0);
    cell.source.answerMeta(1, ImageMeta { PixelSize { 6000, 4000 }, false });
    CHECK(cell.loads.meta()->size == PixelSize { 6000, 4000 });
}

TEST_CASE("a thumbnail in memory without its metadata has that asked for")
{
    Cell cell;
    cell.source.pictures[{ photo, 256 }] = pictureOf(256, 171);
    cell.loads.show(photo, 256);
    REQUIRE(cell.source.requests.size() == 1);
    CHECK(cell.source.requests[0].maxPixel == 0);
    cell.loads.show(photo, 256);
    CHECK(cell.source.requests.size() == 1);
}

TEST_CASE("a thumbnail of another size that is in memory stands for the one that is wanted")
{
    Cell cell;
    auto const small = pictureOf(128, 85);
    cell.source.pictures[{ photo, 128 }] = small;
    cell.source.metas[photo] = ImageMeta { PixelSize { 6000, 4000 }, false };
    cell.loads.show(other, 384);
    CHECK_FALSE(cell.loads.embedded());
    cell.loads.show(photo, 384);
    CHECK(cell.loads.embedded() == small);
    CHECK_FALSE(cell.loads.image());
    CHECK_FALSE(cell.loads.isSettled());
    CHECK_FALSE(cell.source.requests.back().looked);
    cell.loads.show(photo, 512); // before that has come
    CHECK(cell.loads.embedded() == small);
    auto const wanted = pictureOf(512, 341);
    cell.source.answer(cell.source.requests.size() - 1, wanted);
    CHECK(cell.loads.image() == wanted);
    CHECK_FALSE(cell.loads.embedded());
}

TEST_CASE("a photo that cannot be read any more is not shown as it was in another size")
{
    Cell cell;
    cell.source.pictures[{ photo, 128 }] = pictureOf(128, 85);
    cell.source.metas[photo] = ImageMeta { PixelSize { 6000, 4000 }, false };
    cell.loads.show(photo, 384);
    cell.source.answer(0, nullptr);
    CHECK(cell.loads.failed());
    CHECK_FALSE(cell.loads.embedded());
    cell.loads.show(photo, 512);
    CHECK_FALSE(cell.loads.embedded());
}

TEST_CASE("a photo whose metadata is known is looked into for its small picture all the same")
{
    Cell cell;
    cell.source.metas[photo] = ImageMeta { PixelSize { 6000, 4000 }, false };
    cell.loads.show(photo, 256);
    CHECK(cell.source.requests.at(0).looked);
    cell.source.answerLook(0, { std::nullopt, nullptr });
    CHECK(cell.loads.meta()->size == PixelSize { 6000, 4000 });
}

TEST_CASE("the turn of a cell is the turn of its load")
{
    Cell cell;
    CHECK(cell.loads.setTurn({ Turn::Wish::loadAhead, 7 }));
    cell.loads.show(photo, 256);
    CHECK(cell.source.requests[0].turn.place() == Turn::Place { Turn::Wish::loadAhead, 7 });
    CHECK(cell.loads.setTurn({ Turn::Wish::load, 1 }));
    CHECK_FALSE(cell.loads.setTurn({ Turn::Wish::load, 1 }));
    CHECK(cell.source.requests[0].turn.place() == Turn::Place { Turn::Wish::load, 1 });
}

TEST_CASE("showing the same again asks for nothing")
{
    Cell cell;
    cell.loads.show(photo, 256);
    cell.loads.show(photo, 256);
    CHECK(cell.source.requests.size() == 1);
    CHECK(cell.source.wanted() == 1);
}

TEST_CASE("what is in memory is shown in the same frame and not asked for")
{
    Cell cell;
    auto const image = pictureOf(256, 256);
    cell.source.pictures[{ photo, 256 }] = image;
    cell.source.metas[photo] = ImageMeta { PixelSize { 10, 10 }, true };
    cell.loads.show(photo, 256);
    CHECK(cell.loads.image() == image);
    CHECK(cell.loads.meta()->isAnimated);
    CHECK(cell.loads.isSettled());
    CHECK(cell.source.requests.empty());
    CHECK(cell.changes == 0);
}

TEST_CASE("another size keeps the picture until the better one comes")
{
    Cell cell;
    auto const coarse = pictureOf(128, 128);
    auto const fine = pictureOf(256, 256);
    cell.loads.show(photo, 128);
    cell.source.answerLook(0, {});
    cell.source.answer(0, coarse);
    cell.loads.show(photo, 256);
    CHECK(cell.loads.image() == coarse);
    CHECK_FALSE(cell.loads.isSettled());
    CHECK_FALSE(cell.source.requests[1].looked);
    cell.source.answer(1, fine);
    CHECK(cell.loads.image() == fine);
}

TEST_CASE("another size before the first look is looked for anew")
{
    Cell cell;
    cell.loads.show(photo, 128);
    cell.loads.show(photo, 256);
    CHECK(cell.source.requests.size() == 2);
    CHECK(*cell.source.requests[0].dropped);
    CHECK(cell.source.requests[1].looked);
}

TEST_CASE("a size that cannot be had keeps the picture of the other one")
{
    Cell cell;
    auto const coarse = pictureOf(128, 128);
    cell.loads.show(photo, 128);
    cell.source.answerLook(0, {});
    cell.source.answer(0, coarse);
    cell.loads.show(photo, 256);
    cell.source.answer(1, nullptr);
    CHECK(cell.loads.image() == coarse);
    CHECK_FALSE(cell.loads.failed());
    CHECK(cell.loads.isSettled());
}

TEST_CASE("a photo without a picture has failed until there is one")
{
    Cell cell;
    cell.loads.show(photo, 128);
    cell.source.answerLook(0, {});
    cell.source.answer(0, nullptr);
    CHECK(cell.loads.failed());
    CHECK(cell.loads.isSettled());
    CHECK(cell.changes == 2);
    cell.loads.show(photo, 256);
    CHECK(cell.loads.failed());
    cell.source.answer(1, pictureOf(256, 256));
    CHECK_FALSE(cell.loads.failed());
}

TEST_CASE("a picture found in memory ends a failure")
{
    Cell cell;
    cell.loads.show(photo, 128);
    cell.source.answer(0, nullptr);
    cell.source.pictures[{ photo, 256 }] = pictureOf(256, 256);
    cell.loads.show(photo, 256);
    CHECK_FALSE(cell.loads.failed());
    CHECK(cell.loads.image());
}

TEST_CASE("a coarse picture that comes late does not replace the fine one from memory")
{
    Cell cell;
    cell.loads.show(photo, 128);
    auto const fine = pictureOf(256, 256);
    cell.source.pictures[{ photo, 256 }] = fine;
    cell.loads.show(photo, 256);
    cell.source.answerLook(0, { std::nullopt, pictureOf(160, 107) });
    cell.source.answer(0, pictureOf(128, 128));
    CHECK(cell.loads.image() == fine);
    CHECK_FALSE(cell.loads.embedded());
}

TEST_CASE("another photo starts afresh")
{
    Cell cell;
    cell.loads.show(photo, 128);
    cell.source.answerLook(0, { ImageMeta { PixelSize { 1, 1 }, true }, nullptr });
    cell.source.answer(0, pictureOf(128, 128));
    cell.loads.show(other, 128);
    CHECK_FALSE(cell.loads.image());
    CHECK_FALSE(cell.loads.meta().has_value());
    CHECK(cell.source.requests.size() == 2);
    CHECK(cell.source.requests[1].looked);
    cell.source.answer(1, nullptr);
    CHECK(cell.loads.failed());
    cell.loads.show(photo, 128);
    CHECK_FALSE(cell.loads.failed());
}

TEST_CASE("late answers for another photo change nothing")
{
    Cell cell;
    cell.loads.show(photo, 128);
    cell.loads.show(other, 128);
    cell.source.answerLook(0, { ImageMeta { PixelSize { 1, 1 }, true }, pictureOf(160, 120) });
    cell.source.answer(0, pictureOf(128, 128));
    CHECK_FALSE(cell.loads.image());
    CHECK_FALSE(cell.loads.embedded());
    CHECK_FALSE(cell.loads.meta().has_value());
    CHECK(cell.changes == 0);
}

TEST_CASE("missing metadata leaves none")
{
    Cell cell;
    cell.loads.show(photo, 128);
    cell.source.answerLook(0, {});
    CHECK_FALSE(cell.loads.meta().has_value());
    cell.source.answer(0, pictureOf(128, 128));
    CHECK(cell.source.requests.size() == 1);
}

TEST_CASE("a cell that goes cancels its loads")
{
    FakeThumbnails source;
    {
        ThumbnailCellLoads loads(source, [] {});
        loads.show(photo, 128);
        source.answer(0, pictureOf(128, 128));
        CHECK(source.wanted() == 2);
    }
    CHECK(source.wanted() == 0);
}

TEST_CASE("a cell may be dropped by whoever hears of its picture")
{
    FakeThumbnails source;
    std::optional<ThumbnailCellLoads> loads;
    auto const witness = std::make_shared<int>(0);
    loads.emplace(source, [&loads, witness] {
        loads.reset();
        ++*witness;
    });
    loads->show(photo, 128);
    source.answer(0, pictureOf(128, 128));
    CHECK_FALSE(loads.has_value());
    CHECK(*witness == 1);
    CHECK(source.wanted() == 0);
}
