#include "codecs/JpegScanBytes.h"
#include "support/MemoryBytes.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Bytes = std::vector<std::uint8_t>;

// All bytes of the scan, taken a few at a time.
Bytes readAll(Bytes const& file, std::size_t piece, JpegRestarts restarts, std::uint64_t& end,
    std::vector<JpegScanBytes::Restart>& found)
{
    SpanBytes const source(file);
    JpegScanBytes scan(source, 0, piece, restarts);
    Bytes all;
    for (;;) {
        while (auto const* restart = scan.restart()) {
            found.push_back({ all.size() + restart->offset, restart->number });
            scan.passRestart();
        }
        auto const isLast = scan.isComplete();
        auto const used = isLast ? scan.size() : scan.size() / 2;
        all.insert(all.end(), scan.data(), scan.data() + used);
        if (isLast)
            break;
        scan.advance(used);
    }
    end = scan.end();
    return all;
}

} // namespace

TEST_CASE("stuffing is taken out and the scan ends at its marker, however it is read")
{
    Bytes const file { 1, 2, 0xFF, 0, 3, 0xFF, 0xFF, 0, 4, 0xFF, 0, 0xFF, 0, 5, 0xFF, 0xFF, 0xFF,
        0xD9, 9, 9 };
    for (std::size_t piece = 1; piece <= 24; ++piece) {
        CAPTURE(piece);
        std::uint64_t end = 0;
        std::vector<JpegScanBytes::Restart> restarts;
        auto const all = readAll(file, piece, JpegRestarts::expected, end, restarts);
        CHECK(all == Bytes { 1, 2, 0xFF, 3, 0xFF, 4, 0xFF, 0xFF, 5 });
        CHECK(end == 16);
        CHECK(restarts.empty());
    }
}

TEST_CASE("restarts are told with what follows them, or end a scan that knows of none")
{
    Bytes const file { 1, 2, 0xFF, 0xD3, 3, 4, 5, 0xFF, 0xFF, 0xD4, 6, 0xFF, 0xC4, 7 };
    for (std::size_t piece = 1; piece <= 24; ++piece) {
        CAPTURE(piece);
        std::uint64_t end = 0;
        std::vector<JpegScanBytes::Restart> restarts;
        CHECK(readAll(file, piece, JpegRestarts::expected, end, restarts)
            == Bytes { 1, 2, 3, 4, 5, 6 });
        CHECK(end == 11);
        REQUIRE(restarts.size() == 2);
        CHECK(restarts[0].offset == 2);
        CHECK(restarts[0].number == 3);
        CHECK(restarts[1].offset == 5);
        CHECK(restarts[1].number == 4);
        restarts.clear();
        CHECK(readAll(file, piece, JpegRestarts::none, end, restarts) == Bytes { 1, 2 });
        CHECK(end == 2);
        CHECK(restarts.empty());
    }
}

TEST_CASE("a scan without a marker ends with the file, and zeros follow")
{
    Bytes const file { 1, 2, 3, 0xFF };
    SpanBytes const source(file);
    JpegScanBytes scan(source, 0, 100, JpegRestarts::expected);
    scan.advance(0);
    CHECK(scan.isComplete());
    CHECK(scan.isEndSound());
    CHECK(scan.end() == 4);
    REQUIRE(scan.size() == 3);
    CHECK(std::all_of(scan.data() + 3, scan.data() + 3 + JpegScanBytes::margin,
        [](auto byte) { return byte == 0; }));
}

TEST_CASE("a scan of nothing but stuffing is read whole")
{
    Bytes file;
    for (int i = 0; i < 100'000; ++i)
        file.insert(file.end(), { 0xFF, 0 });
    std::uint64_t end = 0;
    std::vector<JpegScanBytes::Restart> restarts;
    CHECK(readAll(file, 4096, JpegRestarts::expected, end, restarts) == Bytes(100'000, 0xFF));
}

TEST_CASE("the end of a scan is found without reading what it says")
{
    Bytes file(300'000, 7);
    file[10] = 0xFF;
    file[11] = 0;
    file[65'535] = 0xFF;
    file[65'536] = 0xD2;
    file[200'000] = 0xFF;
    file[200'001] = 0xFF;
    file[200'002] = 0xC4;
    CHECK(endOfScan(SpanBytes(file), 5) == 200'001);
    CHECK(endOfScan(SpanBytes(file), 200'003) == file.size());
}
