#include "codecs/JpegWalk.h"
#include "codecs/CodedBits.h"
#include "codecs/JpegQuarters.h"
#include <algorithm>

namespace pixelhain {

namespace {

// A state's lower byte is the coefficient that comes next, and what the table adds to it.
constexpr unsigned positionShift = 8;
constexpr std::uint32_t coefficientMask = 0xFF;
constexpr std::uint32_t pastBlock = 0xC0; // set in the coefficient from 64 on
static_assert(positionShift == SkipTable::bitsShift);
static_assert(JpegWalk::positionBits + positionShift <= 32);
static_assert(2 * SkipTable::mostBits <= 57);

// Whether the last look led to the end of the block and no further: several codes taken at once may
// belong to two blocks.
bool isCleanEnd(std::uint32_t state)
{
    return (state & coefficientMask) == 64 || (state & pastBlock) == SkipTable::end;
}

std::uint32_t positionOf(std::uint32_t state)
{
    return state >> positionShift;
}

} // namespace

JpegWalk::JpegWalk(JpegUnit const& unit, std::uint32_t mostUnits)
    : unit_(&unit)
    , room_(mostUnits)
    , starts_(std::size_t { mostUnits } + 1)
    , differences_(mostUnits * unit.count)
    , quarters_(mostUnits * unit.quartered)
{
}

void JpegWalk::begin(
    std::uint8_t const* data, std::uint32_t position, std::uint32_t limit, std::uint32_t most)
{
    limit_ = limit;
    most_ = std::min(most, room_);
    units_ = 0;
    isLost_ = false;
    starts_[0] = position;
    position_ = position;
    nextDifference_ = differences_.data();
    nextQuarters_ = quarters_.data();
    isDone_ = position >= limit || most_ == 0;
    block_ = 0;
    if (!isDone_)
        isDone_ = !beginBlock(data, position);
}

bool JpegWalk::lose(std::uint32_t position)
{
    isLost_ = true;
    position_ = position;
    return false;
}

// Whether another block follows.
[[gnu::always_inline]] inline bool JpegWalk::passBlock(std::uint32_t position)
{
    if (++block_ < unit_->count)
        return true;
    block_ = 0;
    starts_[++units_] = position;
    if (position < limit_ && units_ < most_)
        return true;
    position_ = position;
    return false;
}

// Reads the mean of the block at hand; false if the walk ends.
[[gnu::always_inline]] inline bool JpegWalk::beginBlock(
    std::uint8_t const* data, std::uint32_t position)
{
    auto const& codes = unit_->blocks[block_];
    auto const number
        = codes.meanNumbers->entries()[bitsAt(data, position) >> (64 - NumberTable::lookBits)];
    if (number == 0 || codes.steps != nullptr) [[unlikely]]
        return beginOddBlock(data, position);
    *nextDifference_++ = static_cast<std::int16_t>(number >> NumberTable::numberShift);
    position += static_cast<std::uint32_t>(number & 0xFF);
    state_ = position << positionShift | 1;
    table_ = codes.skips->entries();
    return true;
}

// One whose mean takes more than a look, or that is more than its mean; there may be many of these
// one after the other.
[[gnu::noinline]] bool JpegWalk::beginOddBlock(std::uint8_t const* data, std::uint32_t position)
{
    for (;;) {
        auto const& codes = unit_->blocks[block_];
        auto const bits = bitsAt(data, position);
        auto const found = codes.means->find(bits);
        if (found.bits == 0 || found.symbol > 15)
            return lose(position);
        *nextDifference_++
            = static_cast<std::int16_t>(codedNumber(bits << found.bits, found.symbol));
        position += static_cast<std::uint32_t>(found.bits + found.symbol);
        if (codes.steps == nullptr) {
            state_ = position << positionShift | 1;
            table_ = codes.skips->entries();
            return true;
        }
        auto const end = readQuarters(data, position, codes, *nextQuarters_++);
        if (!end)
            return lose(position);
        position = *end;
        if (!passBlock(position))
            return false;
        if (unit_->blocks[block_].steps == nullptr)
            return beginBlock(data, position);
    }
}

[[gnu::always_inline]] inline bool JpegWalk::endBlock(
    std::uint8_t const* data, std::uint32_t position)
{
    return passBlock(position) && beginBlock(data, position);
}

// Goes on where `next` is past the block of `state`.
[[gnu::always_inline]] inline bool JpegWalk::turn(
    std::uint8_t const* data, std::uint32_t state, std::uint32_t next)
{
    return isCleanEnd(next) ? endBlock(data, positionOf(next)) : turnOdd(data, state);
}

// Takes one code by itself: it is a long one, or the block ends with it.
[[gnu::noinline]] bool JpegWalk::turnOdd(std::uint8_t const* data, std::uint32_t state)
{
    auto const found = unit_->blocks[block_].others->find(bitsAt(data, positionOf(state)));
    if (found.bits == 0)
        return lose(positionOf(state));
    auto const zeros = static_cast<std::uint32_t>(found.symbol >> 4);
    auto const valueBits = static_cast<std::uint32_t>(found.symbol & 15);
    auto const isEnd = valueBits == 0 && zeros != 15;
    auto const position = positionOf(state) + static_cast<std::uint32_t>(found.bits) + valueBits;
    auto const coefficient = (state & coefficientMask) + zeros + 1;
    if (isEnd || coefficient >= 64)
        return endBlock(data, position);
    state_ = position << positionShift | coefficient;
    return true;
}

/// The inner loop, once for each instruction set.
struct JpegWalkKernels {
    template <std::size_t N>
    [[gnu::always_inline]] static void go(std::uint8_t const* data, JpegWalk* const* walks)
    {
        constexpr int shift = 64 - SkipTable::lookBits;
        std::array<std::uint32_t, N> states {};
        std::array<std::uint16_t const*, N> tables {};
        for (std::size_t i = 0; i < N; ++i) {
            states[i] = walks[i]->state_;
            tables[i] = walks[i]->table_;
        }
        for (bool isGoing = true; isGoing;) {
#pragma GCC unroll 4
            for (std::size_t i = 0; i < N; ++i) {
                auto state = states[i];
                auto const bits = bitsAt(data, positionOf(state));
                auto const first = tables[i][bits >> shift];
                auto next = state + first;
                if ((next & pastBlock) == 0) [[likely]] {
                    state = next;
                    next += tables[i][bits << (first >> SkipTable::bitsShift) >> shift];
                    if ((next & pastBlock) == 0) [[likely]] {
                        states[i] = next;
                        continue;
                    }
                }
                auto& walk = *walks[i];
                if (!walk.turn(data, state, next)) [[unlikely]] {
                    walk.isDone_ = true;
                    isGoing = false;
                }
                states[i] = walk.state_;
                tables[i] = walk.table_;
            }
        }
        for (std::size_t i = 0; i < N; ++i)
            walks[i]->state_ = states[i];
    }

    template <std::size_t N> static void plain(std::uint8_t const* data, JpegWalk* const* walks)
    {
        go<N>(data, walks);
    }

#if defined(__x86_64__)
    template <std::size_t N>
    __attribute__((target("bmi,bmi2"))) static void bmi2(
        std::uint8_t const* data, JpegWalk* const* walks)
    {
        go<N>(data, walks);
    }
#endif
};

JpegWalk::Kernels const& JpegWalk::plainKernels()
{
    static constexpr Kernels kernels { JpegWalkKernels::plain<1>, JpegWalkKernels::plain<2>,
        JpegWalkKernels::plain<3>, JpegWalkKernels::plain<4> };
    return kernels;
}

JpegWalk::Kernels const& JpegWalk::kernels()
{
#if defined(__x86_64__)
    static constexpr Kernels bmi2 { JpegWalkKernels::bmi2<1>, JpegWalkKernels::bmi2<2>,
        JpegWalkKernels::bmi2<3>, JpegWalkKernels::bmi2<4> };
    static bool const hasBmi2
        = __builtin_cpu_supports("bmi") != 0 && __builtin_cpu_supports("bmi2") != 0;
    return hasBmi2 ? bmi2 : plainKernels();
#else
    return plainKernels();
#endif
}

} // namespace pixelhain
