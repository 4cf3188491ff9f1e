#include "codecs/JpegWalk.h"
#include <doctest/doctest.h>
#include <random>

using namespace pixelhain;

namespace {

constexpr std::size_t behind = JpegWalk::mostUnitBytes + 16;

// Codes of all lengths; the short ones are the common ones.
HuffmanCode meansCode()
{
    HuffmanCode code;
    code.counts[2] = 1;
    code.counts[3] = 5;
    for (std::size_t length = 4; length <= 9; ++length)
        code.counts[length] = 1;
    for (std::uint8_t i = 0; i < 12; ++i)
        code.symbols[i] = i;
    return code;
}

HuffmanCode othersCode()
{
    HuffmanCode code;
    std::uint8_t const common[] { 0x01, 0x02, 0x00, 0x11, 0x03, 0x21, 0x04, 0x12, 0xF0 };
    std::size_t at = 0;
    for (std::size_t length = 2; length <= 16; ++length) {
        code.counts[length] = length == 2 ? 1 : length == 16 ? 5 : 3;
        for (int i = 0; i < code.counts[length]; ++i, ++at)
            code.symbols[at]
                = at < std::size(common) ? common[at] : static_cast<std::uint8_t>(at * 37);
    }
    return code;
}

std::vector<std::uint8_t> randomBytes(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(count + behind);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(random());
    return bytes;
}

struct Codes {
    HuffmanLookup means = *HuffmanLookup::of(meansCode());
    HuffmanLookup others = *HuffmanLookup::of(othersCode());
    NumberTable meanNumbers { means };
    SkipTable skips { others };
    std::array<std::int16_t, 64> steps {};

    Codes() { steps.fill(3); }

    JpegUnit unit(std::size_t plain, std::size_t quartered) const
    {
        JpegUnit made;
        for (std::size_t i = 0; i < plain + quartered; ++i)
            made.blocks[made.count++]
                = { &means, &others, &meanNumbers, &skips, i < plain ? nullptr : &steps };
        made.quartered = quartered;
        return made;
    }
};

void finish(
    std::uint8_t const* data, std::vector<JpegWalk*> walks, JpegWalk::Kernels const& kernels)
{
    for (;;) {
        std::erase_if(walks, [](JpegWalk const* walk) { return walk->isDone(); });
        if (walks.empty())
            return;
        kernels[walks.size() - 1](data, walks.data());
    }
}

// One code at a time, as slowly as can be.
class SlowReader {
public:
    SlowReader(std::vector<std::uint8_t> const& data, std::uint32_t position)
        : data_(data)
        , position_(position)
    {
    }

    bool skipUnit(JpegUnit const& unit, std::vector<int>& differences)
    {
        for (std::size_t block = 0; block < unit.count; ++block) {
            auto const means = unit.blocks[block].means->find(window());
            if (means.bits == 0)
                return false;
            position_ += static_cast<std::uint32_t>(means.bits);
            auto const raw = means.symbol == 0 ? 0 : int(window() >> (64 - means.symbol));
            auto const isHigh = means.symbol > 0 && raw >= 1 << (means.symbol - 1);
            differences.push_back(isHigh ? raw : raw - (1 << means.symbol) + 1);
            position_ += means.symbol;
            for (int k = 1; k < 64; ++k) {
                auto const found = unit.blocks[block].others->find(window());
                if (found.bits == 0)
                    return false;
                position_ += static_cast<std::uint32_t>(found.bits + (found.symbol & 15));
                if ((found.symbol & 15) == 0 && found.symbol >> 4 != 15)
                    break;
                k += found.symbol >> 4;
            }
        }
        return true;
    }
    std::uint32_t position() const { return position_; }

private:
    std::uint64_t window() const
    {
        std::uint64_t bits = 0;
        for (std::uint32_t i = 0; i < 64; ++i) {
            auto const at = position_ + i;
            bits = bits << 1 | (data_[at / 8] >> (7 - at % 8) & 1U);
        }
        return bits;
    }

    std::vector<std::uint8_t> const& data_;
    std::uint32_t position_;
};

} // namespace

TEST_CASE("a walk reads the means that one finds code by code")
{
    Codes const codes;
    for (unsigned seed = 1; seed <= 30; ++seed) {
        CAPTURE(seed);
        auto const data = randomBytes(4000, seed);
        auto const unit = codes.unit(1 + seed % 4, seed % 3);
        JpegWalk walk(unit, 1000);
        walk.begin(data.data(), seed, 4000 * 8, 1000);
        finish(data.data(), { &walk }, JpegWalk::kernels());
        SlowReader slow(data, seed);
        std::vector<int> differences;
        for (std::uint32_t i = 0; i < walk.units(); ++i) {
            REQUIRE(walk.start(i) == slow.position());
            differences.clear();
            REQUIRE(slow.skipUnit(unit, differences));
            for (std::size_t block = 0; block < unit.count; ++block)
                REQUIRE(walk.differences(i)[block] == differences[block]);
        }
        if (walk.isLost())
            CHECK_FALSE(slow.skipUnit(unit, differences));
        else
            CHECK(walk.position() == slow.position());
    }
}

TEST_CASE("walks side by side read what each reads alone, on every processor")
{
    Codes const codes;
    auto const data = randomBytes(20'000, 5);
    auto const unit = codes.unit(2, 2);
    for (auto const* kernels : { &JpegWalk::kernels(), &JpegWalk::plainKernels() }) {
        std::vector<JpegWalk> together;
        std::vector<JpegWalk*> pointers;
        for (std::size_t i = 0; i < JpegWalk::mostTogether; ++i)
            together.emplace_back(unit, 3000);
        for (std::uint32_t i = 0; i < together.size(); ++i) {
            together[i].begin(data.data(), i * 40'000, (i + 1) * 40'000, 3000);
            pointers.push_back(&together[i]);
        }
        finish(data.data(), pointers, *kernels);
        for (std::uint32_t i = 0; i < together.size(); ++i) {
            CAPTURE(i);
            JpegWalk alone(unit, 3000);
            alone.begin(data.data(), i * 40'000, (i + 1) * 40'000, 3000);
            finish(data.data(), { &alone }, JpegWalk::plainKernels());
            REQUIRE(alone.units() == together[i].units());
            CHECK(alone.isLost() == together[i].isLost());
            CHECK(alone.position() == together[i].position());
            for (std::uint32_t at = 0; at < alone.units(); ++at) {
                REQUIRE(alone.start(at) == together[i].start(at));
                for (std::size_t block = 0; block < unit.count; ++block)
                    REQUIRE(alone.differences(at)[block] == together[i].differences(at)[block]);
                for (std::size_t block = 0; block < unit.quartered; ++block)
                    REQUIRE(alone.quarters(at)[block] == together[i].quarters(at)[block]);
            }
        }
    }
}

TEST_CASE("a walk ends at its limit, at its room, and where no code begins")
{
    Codes const codes;
    auto const unit = codes.unit(1, 0);
    std::vector<std::uint8_t> zeros(1000 + behind);
    // 00 is a mean that does not change, then 63 values of one bit.
    constexpr std::uint32_t unitBits = 2 + 63 * 3;
    JpegWalk walk(unit, 10);
    walk.begin(zeros.data(), 0, 8000, 100);
    finish(zeros.data(), { &walk }, JpegWalk::kernels());
    CHECK(walk.units() == 10);
    CHECK(walk.position() == 10 * unitBits);
    walk.begin(zeros.data(), 8, 2 * unitBits + 8, 100);
    finish(zeros.data(), { &walk }, JpegWalk::kernels());
    CHECK(walk.units() == 2);
    CHECK_FALSE(walk.isLost());
    walk.begin(zeros.data(), 8, 8, 100);
    CHECK(walk.isDone());
    CHECK(walk.units() == 0);
    for (std::size_t i = 100; i < 200; ++i)
        zeros[i] = 0xFF;
    walk.begin(zeros.data(), 0, 8000, 100);
    finish(zeros.data(), { &walk }, JpegWalk::kernels());
    CHECK(walk.isLost());
    CHECK(walk.start(4) == 4 * unitBits);
    CHECK(walk.position() >= 100 * 8);
    CHECK(walk.position() < 102 * 8);
}
