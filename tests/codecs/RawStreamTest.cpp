#include "codecs/RawStream.h"
#include "codecs/ByteView.h"
#include <cstdio>
#include <cstring>
#include <doctest/doctest.h>
#include <numeric>

using namespace pixelhain;

namespace {

std::vector<std::uint8_t> counted(std::size_t length)
{
    std::vector<std::uint8_t> bytes(length);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t { 0 });
    return bytes;
}

} // namespace

TEST_CASE("a RAW stream reads pieces, whole blocks and single bytes from wherever it stands")
{
    auto const bytes = counted(200'000);
    SpanBytes const file(bytes);
    ThreadTimeLimit const limit(60);
    RawStream stream(file, limit);
    CHECK(stream.size() == 200'000);
    std::vector<std::uint8_t> into(150'000);
    CHECK(stream.read(into.data(), 1, 10) == 10);
    CHECK(into[9] == 9);
    CHECK(stream.read(into.data(), 3, 50'000) == 50'000);
    CHECK(std::equal(into.begin(), into.end(), bytes.begin() + 10));
    CHECK(stream.tell() == 150'010);
    CHECK(stream.get_char() == bytes[150'010]);
    CHECK(stream.seek(-1, SEEK_END) == 0);
    CHECK(stream.get_char() == bytes[199'999]);
    CHECK(stream.eof() == 1);
    CHECK(stream.get_char() == -1);
    CHECK(stream.seek(-5, SEEK_CUR) == 0);
    CHECK(stream.read(into.data(), 2, 10) == 2);
}

TEST_CASE("a RAW stream cannot be led outside its file")
{
    auto const bytes = counted(100);
    SpanBytes const file(bytes);
    ThreadTimeLimit const limit(60);
    RawStream stream(file, limit);
    stream.seek(-1000, SEEK_SET);
    CHECK(stream.tell() == 0);
    stream.seek(INT64_MAX, SEEK_CUR);
    stream.seek(INT64_MAX, SEEK_CUR);
    CHECK(stream.tell() == 100);
    std::uint8_t byte = 0;
    CHECK(stream.read(&byte, 1, SIZE_MAX) == 0);
    CHECK(stream.read(&byte, 0, 5) == 0);
}

TEST_CASE("a RAW stream reads lines and numbers")
{
    std::string const text = "first line\n  42 -7.5 word";
    SpanBytes const file({ reinterpret_cast<std::uint8_t const*>(text.data()), text.size() });
    ThreadTimeLimit const limit(60);
    RawStream stream(file, limit);
    char line[8];
    CHECK(std::string(stream.gets(line, 8)) == "first l");
    CHECK(std::string(stream.gets(line, 8)) == "ine\n");
    int whole = 0;
    CHECK(stream.scanf_one("%d", &whole) == 1);
    CHECK(whole == 42);
    float number = 0;
    CHECK(stream.scanf_one("%f", &number) == 1);
    CHECK(number == doctest::Approx(-7.5));
    CHECK(stream.scanf_one("%s", line) == EOF);
    CHECK(stream.scanf_one("%d", &whole) == EOF);
    CHECK(stream.gets(line, 8) == nullptr);
}

TEST_CASE("directories that are read behind the end again and again are given up")
{
    auto const bytes = counted(10);
    SpanBytes const file(bytes);
    ThreadTimeLimit const limit(60);
    RawStream stream(file, limit);
    stream.seek(0, SEEK_END);
    auto const readOn = [&] {
        for (int i = 0; i < 1'000'000; ++i)
            static_cast<void>(stream.get_char());
    };
    CHECK_THROWS_AS(readOn(), LibRaw_exceptions);
    CHECK_FALSE(stream.isCut());
}

TEST_CASE("pixels that are missing are counted, those that are only read ahead are not")
{
    auto const bytes = counted(6400);
    SpanBytes const file(bytes);
    ThreadTimeLimit const limit(60);
    RawStream stream(file, limit);
    stream.expectPixels();
    stream.seek(0, SEEK_END);
    for (int i = 0; i < 100; ++i)
        CHECK(stream.get_char() == -1);
    CHECK_FALSE(stream.isCut());
    CHECK(stream.get_char() == -1);
    CHECK(stream.isCut());
    for (int i = 0; i < 1'000'000; ++i)
        static_cast<void>(stream.get_char());
}

TEST_CASE("a RAW stream stops when its time is over")
{
    auto const bytes = counted(10);
    SpanBytes const file(bytes);
    ThreadTimeLimit const over(-1);
    RawStream stream(file, over);
    auto const readOn = [&] {
        for (int i = 0; i < 1'000'000; ++i)
            stream.seek(0, SEEK_SET);
    };
    CHECK_THROWS_AS(readOn(), LibRaw_exceptions);
}
