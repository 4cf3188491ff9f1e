#include "codecs/RecentBytes.h"
#include "codecs/CountedBytes.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

std::vector<std::uint8_t> numbered(std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    return bytes;
}

/// What was asked of the source below.
struct Desk {
    std::vector<std::uint8_t> const bytes = numbered(300'000);
    std::uint64_t count = 0;
    CountedBytes counted { std::make_unique<SpanBytes>(bytes), count };
    RecentBytes recent { counted };

    /// Reads, and tells how much of it was read below.
    std::uint64_t read(std::size_t offset, std::size_t length)
    {
        auto const before = count;
        std::vector<std::uint8_t> into(length);
        auto const got = recent.readAt(offset, into);
        auto const there = bytes.size() - std::min(offset, bytes.size());
        CHECK(got == std::min(length, there));
        CHECK(std::equal(into.begin(), into.begin() + static_cast<std::ptrdiff_t>(got),
            bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, bytes.size()))));
        return count - before;
    }
};

} // namespace

TEST_CASE("what was read last is not read again")
{
    Desk desk;
    CHECK(desk.recent.size() == 300'000);
    CHECK(desk.read(100, 1'000) == 1'000);
    CHECK(desk.read(100, 1'000) == 0);
    CHECK(desk.read(600, 300) == 0);
    CHECK(desk.read(600, 1'000) == 500);
    CHECK(desk.read(599, 2) == 2); // it began behind it
}

TEST_CASE("what somebody else has read is not read again")
{
    Desk desk;
    desk.recent.keep(1'000, { desk.bytes.data() + 1'000, 100'000 });
    CHECK(desk.read(1'000, 100) == 0);
    CHECK(desk.read(1'000, 150'000) == 50'000);
    CHECK(desk.read(999, 10) == 10);
}

TEST_CASE("of a long piece the end is kept")
{
    Desk desk;
    CHECK(desk.read(0, 200'000) == 200'000);
    CHECK(desk.read(200'000 - RecentBytes::mostKept, 1'000) == 0);
    CHECK(desk.read(190'000, 30'000) == 20'000);
    CHECK(desk.read(0, 10) == 10);
}

TEST_CASE("what is kept does not reach beyond the end")
{
    Desk desk;
    CHECK(desk.read(299'000, 5'000) == 1'000);
    CHECK(desk.read(299'500, 5'000) == 0);
    CHECK(desk.read(300'000, 5) == 0);
    CHECK(desk.read(400'000, 5) == 0);
    CHECK(desk.read(299'990, 10) == 10); // what was read last was nothing
}
