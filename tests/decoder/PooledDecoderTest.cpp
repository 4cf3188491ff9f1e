#include "decoder/PooledDecoder.h"
#include "decoder/DecoderProgram.h"
#include "decoder/InProcessDecoder.h"
#include "support/ImageWriters.h"
#include "support/TemporaryFolder.h"
#include <cstring>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

std::string_view view(FileBytes const& bytes)
{
    return { reinterpret_cast<char const*>(bytes.data()), bytes.size() };
}

bool isEqual(Bitmap const& a, Bitmap const& b)
{
    if (a.size != b.size || a.isOpaque != b.isOpaque || a.isEmpty() != b.isEmpty())
        return false;
    for (int y = 0; y < a.size.height; ++y)
        if (std::memcmp(a.row(y), b.row(y), static_cast<std::size_t>(a.size.width) * 4) != 0)
            return false;
    return true;
}

} // namespace

TEST_CASE("a picture decoded in another process is the one decoded here")
{
    TemporaryFolder const folder;
    WorkerPool::Options options;
    options.program = decoderProgram();
    PooledDecoder pooled(options);
    InProcessDecoder here;
    auto const url
        = folder.file("a.jpg", view(writeJpeg(RgbaPixels::filled({ 4000, 3000 }, 0x1234C0FF))));
    CHECK(pooled.readMeta(url) == here.readMeta(url));
    for (int const maxPixel : { 100, 384, 1024, 2880, 5000, 0 }) {
        CAPTURE(maxPixel);
        auto const theirs = pooled.decode({ url, maxPixel, EmbeddedPreviews::ignore });
        auto const ours = here.decode({ url, maxPixel, EmbeddedPreviews::ignore });
        REQUIRE(theirs);
        REQUIRE(ours);
        CHECK(theirs->origin == ours->origin);
        CHECK(isEqual(theirs->bitmap, ours->bitmap));
    }
}
