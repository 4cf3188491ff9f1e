#include "decoder/SharedSpace.h"
#include "decoder/SpaceMemory.h"
#include "decoder/SpaceShelf.h"
#include <cstring>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t mebibyte = std::size_t { 1 } << 20;

std::size_t residentBytes(SharedSpace const& space)
{
    struct stat info { };
    REQUIRE(::fstat(space.descriptor(), &info) == 0);
    return static_cast<std::size_t>(info.st_blocks) * 512;
}

void fill(SharedSpace const& space, std::size_t bytes, int value)
{
    WritableSpace const view(space.descriptor(), bytes);
    REQUIRE(view);
    std::memset(view.data(), value, bytes);
}

Bitmap shapeOf(PixelSize size)
{
    Bitmap shape;
    shape.size = size;
    shape.bytesPerRow = static_cast<std::size_t>(size.width) * 4;
    return shape;
}

} // namespace

TEST_CASE("what is written into a space is read from it")
{
    auto const space = SharedSpace::create(100);
    REQUIRE(space);
    CHECK(space->size() == page);
    fill(*space, 100, 42);
    CHECK(space->data()[99] == std::byte { 42 });
    CHECK(space->data()[100] == std::byte {});
}

TEST_CASE("nobody can make a space smaller or larger, or allow that again")
{
    auto const space = SharedSpace::create(page);
    REQUIRE(space);
    CHECK(::ftruncate(space->descriptor(), 0) != 0);
    CHECK(::ftruncate(space->descriptor(), 2 * page) != 0);
    CHECK(::fcntl(space->descriptor(), F_ADD_SEALS, F_SEAL_WRITE) != 0);
}

TEST_CASE("a space that nobody touched takes no memory, and gives back what is behind a picture")
{
    auto const space = SharedSpace::create(mebibyte);
    REQUIRE(space);
    CHECK(residentBytes(*space) == 0);
    fill(*space, mebibyte, 1);
    CHECK(residentBytes(*space) == mebibyte);
    space->freeBehind(page + 1);
    CHECK(residentBytes(*space) == 2 * page);
    CHECK(space->data()[page] == std::byte { 1 });
    CHECK(space->data()[2 * page] == std::byte {});
}

TEST_CASE("a picture is wrapped where it lies, and its space comes back with the last copy")
{
    SpaceShelf shelf;
    auto space = shelf.take(mebibyte, 1);
    REQUIRE(space);
    fill(space->memory, mebibyte, 9);
    auto const* const place = space->memory.data();
    auto picture = shelf.wrap(std::move(space), shapeOf({ 256, 256 }));
    CHECK(reinterpret_cast<std::byte const*>(picture.row(0)) == place);
    CHECK(picture.row(255)[1023] == 9);
    auto const copy = picture;
    picture = {};
    auto const meanwhile = shelf.take(mebibyte, 1);
    REQUIRE(meanwhile);
    CHECK(meanwhile->memory.data() != place);
    CHECK(copy.row(0)[0] == 9);
}

TEST_CASE("a space is used again, but never while a picture lies in it, nor by another worker")
{
    SpaceShelf shelf;
    auto space = shelf.take(mebibyte, 1);
    REQUIRE(space);
    auto const* const place = space->memory.data();
    auto const descriptor = space->memory.descriptor();
    auto picture = shelf.wrap(std::move(space), shapeOf({ 64, 64 }));
    picture = {};
    auto const others = shelf.take(mebibyte, 2);
    REQUIRE(others);
    CHECK(others->memory.data() != place);
    auto const larger = shelf.take(2 * mebibyte, 1);
    REQUIRE(larger);
    CHECK(larger->memory.data() != place);
    auto const again = shelf.take(mebibyte, 1);
    REQUIRE(again);
    CHECK(again->memory.data() == place);
    CHECK(again->memory.descriptor() == descriptor);
}

TEST_CASE("few spaces are kept for later")
{
    SpaceShelf shelf;
    std::vector<Bitmap> pictures;
    for (int i = 0; i < 20; ++i)
        pictures.push_back(shelf.wrap(shelf.take(mebibyte, 1), shapeOf({ 64, 64 })));
    auto const openFiles = [] {
        int count = 0;
        for (int number = 0; number < 256; ++number)
            count += ::fcntl(number, F_GETFD) >= 0 ? 1 : 0;
        return count;
    };
    auto const before = openFiles();
    pictures.clear();
    CHECK(openFiles() == before - 17);
}

TEST_CASE("the spaces that are kept for later are no more than a few screens together")
{
    SpaceShelf shelf;
    auto const keptOf = [&](std::size_t bytes, std::uint64_t worker, int count) {
        std::vector<std::unique_ptr<SpaceShelf::Space>> spaces;
        for (int i = 0; i < count; ++i)
            spaces.push_back(shelf.take(bytes, worker));
        for (auto& space : spaces) {
            fill(space->memory, page, 7);
            shelf.giveBack(std::move(space));
        }
        // What was kept still has what was written, new memory has nothing.
        int kept = 0;
        for (int i = 0; i < count; ++i)
            spaces.push_back(shelf.take(bytes, worker));
        for (auto const& space : spaces)
            kept += space && space->memory.data()[0] == std::byte { 7 } ? 1 : 0;
        return kept;
    };
    CHECK(keptOf(64 * mebibyte, 1, 3) == 3);
    CHECK(keptOf(100 * mebibyte, 2, 3) == 1);
    CHECK(keptOf(200 * mebibyte, 3, 1) == 0);
    CHECK(keptOf(mebibyte, SpaceShelf::noWorker, 1) == 0);
}

TEST_CASE("a picture may outlive the shelf")
{
    Bitmap picture;
    {
        SpaceShelf shelf;
        auto space = shelf.take(page, 1);
        fill(space->memory, page, 5);
        picture = shelf.wrap(std::move(space), shapeOf({ 8, 8 }));
    }
    CHECK(picture.row(7)[31] == 5);
}

TEST_CASE("the first bitmap that may be the answer lies in the space, one at a time")
{
    auto const space = SharedSpace::create(mebibyte);
    WritableSpace const view(space->descriptor(), mebibyte);
    auto const liesThere = [&](Bitmap const& bitmap) { return bitmap.pixels.get() == view.data(); };
    SpaceMemory const memory(view, 256);
    auto first = Bitmap::allocate({ 256, 200 }, true);
    auto const second = Bitmap::allocate({ 256, 200 }, true);
    CHECK(liesThere(first));
    CHECK_FALSE(second.isEmpty());
    CHECK_FALSE(liesThere(second));
    first = {};
    auto const wide = Bitmap::allocate({ 257, 1 }, true);
    CHECK_FALSE(wide.isEmpty());
    CHECK_FALSE(liesThere(wide));
    CHECK(liesThere(Bitmap::allocate({ 256, 256 }, true)));
}

TEST_CASE("a bitmap too large for the space lies elsewhere")
{
    auto const space = SharedSpace::create(page);
    WritableSpace const view(space->descriptor(), page);
    SpaceMemory const memory(view, 1000);
    auto const bitmap = Bitmap::allocate({ 33, 33 }, true);
    CHECK_FALSE(bitmap.isEmpty());
    CHECK(bitmap.pixels.get() != view.data());
}

TEST_CASE("bitmaps lie on the heap again once the space is no longer lent")
{
    auto const space = SharedSpace::create(page);
    WritableSpace const view(space->descriptor(), page);
    {
        SpaceMemory const memory(view, 8);
        CHECK(Bitmap::allocate({ 8, 8 }, true).pixels.get() == view.data());
    }
    CHECK(Bitmap::allocate({ 8, 8 }, true).pixels.get() != view.data());
}
