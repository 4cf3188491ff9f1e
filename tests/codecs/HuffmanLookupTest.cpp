#include "codecs/HuffmanLookup.h"
#include <algorithm>
#include <bit>
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;

namespace {

// Codes of every length: one of each from 1 to 15 bits, and the rest of 16.
HuffmanCode staircase()
{
    HuffmanCode code;
    for (std::size_t length = 1; length <= 16; ++length) {
        code.counts[length] = 1;
        code.symbols[length - 1] = static_cast<std::uint8_t>(0x10 * (length - 1) + length % 11);
    }
    return code;
}

// Three symbols that follow each other in blocks: a value of one bit, a run of sixteen, the end.
HuffmanCode shortCode()
{
    HuffmanCode code;
    code.counts[2] = 3;
    code.symbols[0] = 0x01;
    code.symbols[1] = 0xF0;
    code.symbols[2] = 0x00;
    return code;
}

std::uint64_t bitsOf(std::string const& text)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        bits |= std::uint64_t { text[i] == '1' } << (63 - i);
    return bits;
}

struct Entry {
    unsigned bits;
    unsigned coefficients;
    bool operator==(Entry const&) const = default;
};

Entry entryFor(SkipTable const& table, std::string const& text)
{
    auto const entry = table.entries()[bitsOf(text) >> (64 - SkipTable::lookBits)];
    return { unsigned(entry) >> SkipTable::bitsShift, entry & 0xFFU };
}

} // namespace

TEST_CASE("codes of every length are found, whatever follows them")
{
    auto const lookup = HuffmanLookup::of(staircase());
    REQUIRE(lookup);
    for (int length = 1; length <= 16; ++length) {
        CAPTURE(length);
        auto const word = std::string(std::size_t(length) - 1, '1') + '0';
        for (auto const* const rest : { "0000000000000000", "1111111111111111" }) {
            auto const found = lookup->find(bitsOf(word + rest));
            CHECK(found.bits == length);
            CHECK(found.symbol == staircase().symbols[std::size_t(length) - 1]);
        }
    }
    CHECK(lookup->find(~std::uint64_t { 0 }).bits == 0);
}

TEST_CASE("a code with more words than its lengths allow is none")
{
    HuffmanCode code;
    code.counts[1] = 2; // the second is nothing but ones
    CHECK_FALSE(HuffmanLookup::of(code));
    code.counts[1] = 1;
    CHECK(HuffmanLookup::of(code));
    code.counts[2] = 2;
    CHECK_FALSE(HuffmanLookup::of(code));
    code.counts[2] = 1;
    code.counts[16] = 254;
    CHECK(HuffmanLookup::of(code));
    code.counts[3] = 200;
    CHECK_FALSE(HuffmanLookup::of(code));
}

TEST_CASE("a code without words finds nothing")
{
    auto const lookup = HuffmanLookup::of({});
    REQUIRE(lookup);
    CHECK(lookup->find(0).bits == 0);
    CHECK(lookup->find(~std::uint64_t { 0 }).bits == 0);
}

TEST_CASE("a look passes over as many codes as it sees whole")
{
    SkipTable const table(*HuffmanLookup::of(shortCode()));
    // A value is 00 and a bit, a run 01, the end 10.
    CHECK(entryFor(table, "001001001001") == Entry { 12, 4 });
    CHECK(entryFor(table, "010010010100") == Entry { 13, 35 });
    CHECK(entryFor(table, "001011000000") == Entry { 7, 1 + 16 + SkipTable::end });
    CHECK(entryFor(table, "100000000000") == Entry { 2, SkipTable::end });
    CHECK(entryFor(table, "010101010101") == Entry { 6, 48 });
    CHECK(entryFor(table, "111111111111") == Entry { 0, SkipTable::unknown });
}

TEST_CASE("a code longer than a look is taken by itself")
{
    SkipTable const table(*HuffmanLookup::of(staircase()));
    CHECK(entryFor(table, "111111111111") == Entry { 0, SkipTable::unknown });
    // One of 12 bits is the longest that is seen; its value is passed over unseen.
    CHECK(entryFor(table, "111111111110") == Entry { 12 + 1, 0xB + 1 });
}

TEST_CASE("a number is found with its code, if one look holds both")
{
    HuffmanCode code;
    code.counts[2] = 3;
    code.symbols[0] = 0;
    code.symbols[1] = 3;
    code.symbols[2] = 10;
    NumberTable const table(*HuffmanLookup::of(code));
    auto const entry = [&](std::string const& text) {
        return table.entries()[bitsOf(text) >> (64 - NumberTable::lookBits)];
    };
    CHECK(entry("00111111111") == 2);
    CHECK(entry("01111000000") == 7 * 256 + 5);
    CHECK(entry("01100000000") == 4 * 256 + 5);
    CHECK(entry("01011000000") == -4 * 256 + 5);
    CHECK(entry("01000111111") == -7 * 256 + 5);
    CHECK(entry("10000000000") == 0);
    CHECK(entry("11000000000") == 0);
}

TEST_CASE("every look goes on and leaves room for what is looked at next")
{
    for (auto const& code : { staircase(), shortCode() }) {
        SkipTable const table(*HuffmanLookup::of(code));
        for (std::size_t i = 0; i < std::size_t { 1 } << SkipTable::lookBits; ++i) {
            auto const bits = unsigned(table.entries()[i]) >> SkipTable::bitsShift;
            auto const coefficients = table.entries()[i] & 0xFFU;
            if (coefficients == SkipTable::unknown) {
                REQUIRE(bits == 0);
                continue;
            }
            REQUIRE(bits > 0);
            REQUIRE(bits <= SkipTable::mostBits);
            REQUIRE(coefficients > 0);
            REQUIRE(coefficients <= SkipTable::end + 62);
        }
    }
}
