#include "codecs/HuffmanLookup.h"
#include "codecs/CodedBits.h"
#include <cstddef>

namespace pixelhain {

namespace {

// One look's worth of codes: what the first `lookBits` of a number stand for.
unsigned skipEntry(HuffmanLookup const& code, std::uint64_t bits)
{
    constexpr unsigned most = 62; // keeps the sum of two entries' coefficients below their marks
    int taken = 0;
    unsigned coefficients = 0;
    while (taken < SkipTable::lookBits) {
        auto const found = code.find(bits << taken);
        if (found.bits == 0 || taken + found.bits > SkipTable::lookBits)
            break;
        unsigned const zeros = found.symbol >> 4U;
        auto const valueBits = found.symbol & 15;
        if (valueBits == 0 && zeros != 15) {
            taken += found.bits;
            coefficients += SkipTable::end;
            break;
        }
        if (coefficients + zeros + 1 > most)
            break;
        taken += found.bits + valueBits;
        coefficients += zeros + 1;
    }
    return taken == 0 ? SkipTable::unknown
                      : static_cast<unsigned>(taken) << SkipTable::bitsShift | coefficients;
}

// What the first bits stand for, or 0 if they are not enough.
std::int32_t numberEntry(HuffmanLookup const& code, std::uint64_t bits)
{
    auto const found = code.find(bits);
    auto const taken = found.bits + found.symbol;
    if (found.bits == 0 || found.symbol > 15 || taken > NumberTable::lookBits)
        return 0;
    return codedNumber(bits << found.bits, found.symbol) * (1 << NumberTable::numberShift) + taken;
}

} // namespace

std::optional<HuffmanLookup> HuffmanLookup::of(HuffmanCode const& code)
{
    HuffmanLookup lookup;
    lookup.symbols_ = code.symbols;
    std::uint32_t next = 0;
    std::uint32_t count = 0;
    for (std::size_t length = 1; length < code.counts.size(); ++length) {
        lookup.before_[length] = count;
        next = next * 2 + code.counts[length];
        count += code.counts[length];
        if (code.counts[length] > 0 && next >= 1U << length)
            return {};
        lookup.beyond_[length] = next << (16 - length);
    }
    if (count > code.symbols.size())
        return {};
    lookup.fillShort();
    return lookup;
}

void HuffmanLookup::fillShort()
{
    for (std::size_t i = 0; i < short_.size(); ++i) {
        auto const found = findLong(std::uint64_t { i } << (64 - shortBits));
        if (found.bits > 0 && found.bits <= shortBits)
            short_[i] = static_cast<std::uint16_t>(found.bits << 8 | found.symbol);
    }
}

HuffmanLookup::Found HuffmanLookup::findLong(std::uint64_t bits) const
{
    auto const front = static_cast<std::uint32_t>(bits >> 48);
    for (std::size_t length = 1; length < beyond_.size(); ++length) {
        if (front >= beyond_[length])
            continue;
        // The words of one length are as many as lie between the shorter ones' end and theirs.
        auto const index = before_[length] + ((front - beyond_[length - 1]) >> (16 - length));
        return { static_cast<int>(length), symbols_[index & 255U] };
    }
    return {};
}

SkipTable::SkipTable(HuffmanLookup const& code)
    : entries_(std::size_t { 1 } << lookBits)
{
    for (std::size_t i = 0; i < entries_.size(); ++i)
        entries_[i]
            = static_cast<std::uint16_t>(skipEntry(code, std::uint64_t { i } << (64 - lookBits)));
}

NumberTable::NumberTable(HuffmanLookup const& code)
    : entries_(std::size_t { 1 } << lookBits)
{
    for (std::size_t i = 0; i < entries_.size(); ++i)
        entries_[i] = numberEntry(code, std::uint64_t { i } << (64 - lookBits));
}

} // namespace pixelhain
