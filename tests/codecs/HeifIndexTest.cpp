#include "codecs/HeifIndex.h"
#include "codecs/CodecSupport.h"
#include "support/ByteWriter.h"
#include "support/CodedWriters.h"
#include <doctest/doctest.h>
#include <string_view>

using namespace pixelhain;

namespace {

std::size_t behind(FileBytes const& file, std::string_view name)
{
    auto const found = std::search(file.begin(), file.end(), name.begin(), name.end());
    REQUIRE(found != file.end());
    return static_cast<std::size_t>(found - file.begin()) + name.size();
}

// A picture too small for its encoder, which makes it a grid of one larger tile.
FileBytes grid()
{
    HeifOptions options;
    options.coding = HeifOptions::Coding::hevc;
    return writeHeif(sampleColors({ 50, 40 }), options);
}

std::optional<HeifIndex> indexOf(FileBytes const& file)
{
    SpanBytes const bytes(file);
    return HeifIndex::read(bytes);
}

} // namespace

TEST_CASE("a grid has the size it states itself")
{
    auto const file = grid();
    SpanBytes const bytes(file);
    auto const index = HeifIndex::read(bytes);
    REQUIRE(index);
    CHECK(index->size() == PixelSize { 50, 40 });
    CHECK(index->pictures() == 1);
    CHECK(index->decodedPixels(index->primary()) == 50 * 40 + 64 * 64);
    CHECK_FALSE(index->isDeep());
    CHECK_FALSE(index->isCut());
}

TEST_CASE("a picture that is made of itself is refused")
{
    auto file = grid();
    auto const at = behind(file, "dimg");
    std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(at), 2,
        file.begin() + static_cast<std::ptrdiff_t>(at) + 4);
    CHECK_FALSE(indexOf(file));
    CHECK_FALSE(opened(file));
}

TEST_CASE("a grid that claims more pixels than there may be is refused")
{
    auto file = grid();
    auto const at = behind(file, "idat");
    std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(at) + 4, 4, std::uint8_t { 0xFF });
    CHECK_FALSE(indexOf(file));
}

TEST_CASE("a picture of more pictures than a camera writes is refused")
{
    ByteWriter references(true);
    references.u32(0);
    auto const first = grid();
    CHECK(indexOf(first));
    auto file = first;
    // The table of references is replaced by one that names the tile over and over.
    for (int i = 0; i < 6; ++i) {
        references.u32(8 + 4 + 2 * 65000);
        references.text("dimg");
        references.u16(2);
        references.u16(65000);
        for (int tile = 0; tile < 65000; ++tile)
            references.u16(1);
    }
    auto const at = behind(file, "iref") - 8;
    auto const old = std::size_t { bigEndian32(file.data() + at) };
    ByteWriter box(true);
    box.u32(8 + references.size());
    box.text("iref");
    box.raw(references.bytes);
    file.erase(file.begin() + static_cast<std::ptrdiff_t>(at),
        file.begin() + static_cast<std::ptrdiff_t>(at + old));
    file.insert(file.begin() + static_cast<std::ptrdiff_t>(at), box.bytes.begin(), box.bytes.end());
    auto const meta = behind(file, "meta") - 8;
    ByteWriter length(true);
    length.u32(bigEndian32(file.data() + meta) + box.size() - old);
    std::copy(
        length.bytes.begin(), length.bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(meta));
    CHECK_FALSE(indexOf(file));
}

TEST_CASE("what does not belong to a thumbnail is masked for its decoder")
{
    HeifOptions options;
    options.thumbnail = 160;
    auto const file = writeHeif(sampleColors({ 640, 480 }), options);
    SpanBytes const bytes(file);
    auto const index = HeifIndex::read(bytes);
    REQUIRE(index);
    REQUIRE(index->thumbnails().size() == 1);
    auto const thumbnail = index->thumbnails().front();
    CHECK(thumbnail.size == PixelSize { 160, 120 });
    auto masked = file;
    for (auto const& patch : index->patchesFor(thumbnail.item)) {
        REQUIRE(patch.offset + patch.length <= masked.size());
        std::copy_n(patch.bytes.begin(), patch.length,
            masked.begin() + static_cast<std::ptrdiff_t>(patch.offset));
    }
    auto const alone = opened(masked);
    REQUIRE(alone);
    CHECK(alone->pixelSize() == PixelSize { 160, 120 });
    CHECK(alone->frameCount() == 1);
    CHECK(alone->previews().empty());
    CHECK(alone->decodeWhole());
}
