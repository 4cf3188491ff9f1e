#include "codecs/JpegWalk.h"
#include "codecs/CodedBits.h"
#include "codecs/JpegQuarters.h"
#include <algorithm>

namespace pixelhain {

namespace {

constexpr std::uint32_t positionMask = (1U << JpegWalk::positionBits) - 1;
constexpr std::uint32_t blockEnd = 64U << JpegWalk::positionBits;
static_assert(JpegWalk::positionBits == SkipTable::coefficientShift);
static_assert(2 * SkipTable::mostBits <= 57);

std::uint32_t coefficient(std::uint32_t state)
{
    return state >> JpegWalk::positionBits;
}

// Whether the last look led to the end of the block and no further: several codes taken at once may
// belong to two blocks.
bool isCleanEnd(std::uint32_t next)
{
    auto const at = coefficient(next);
    return at == 64 || (at > SkipTable::end && at < SkipTable::end + 64);
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

// Reads the mean of the block at hand; false if the walk ends.
bool JpegWalk::beginBlock(std::uint8_t const* data, std::uint32_t position)
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
            state_ = position | 1U << positionBits;
            table_ = codes.skips->entries();
            return true;
        }
        auto const end = readQuarters(data, position, codes, *nextQuarters_++);
        if (!end)
            return lose(position);
        position = *end;
        if (++block_ < unit_->count)
            continue;
        block_ = 0;
        starts_[++units_] = position;
        position_ = position;
        if (position >= limit_ || units_ == most_)
            return false;
    }
}

// Goes on where the block of `state` ended with `next`, or something out of the ordinary was met.
bool JpegWalk::turn(std::uint8_t const* data, std::uint32_t state, std::uint32_t next)
{
    if (!isCleanEnd(next)) {
        auto const found = unit_->blocks[block_].others->find(bitsAt(data, state & positionMask));
        if (found.bits == 0)
            return lose(state & positionMask);
        auto const zeros = static_cast<std::uint32_t>(found.symbol >> 4);
        auto const valueBits = static_cast<std::uint32_t>(found.symbol & 15);
        auto const isEnd = valueBits == 0 && zeros != 15;
        next = state + static_cast<std::uint32_t>(found.bits) + valueBits
            + ((isEnd ? 64 : zeros + 1) << positionBits);
        if (next < blockEnd) {
            state_ = next;
            return true;
        }
    }
    auto const position = next & positionMask;
    if (++block_ < unit_->count)
        return beginBlock(data, position);
    block_ = 0;
    starts_[++units_] = position;
    position_ = position;
    return position < limit_ && units_ != most_ && beginBlock(data, position);
}

/// The inner loop, once for each instruction set.
struct JpegWalkKernels {
    template <std::size_t N>
    [[gnu::always_inline]] static void go(std::uint8_t const* data, JpegWalk* const* walks)
    {
        constexpr int shift = 64 - SkipTable::lookBits;
        std::array<std::uint32_t, N> states {};
        std::array<std::uint32_t const*, N> tables {};
        for (std::size_t i = 0; i < N; ++i) {
            states[i] = walks[i]->state_;
            tables[i] = walks[i]->table_;
        }
        for (bool isGoing = true; isGoing;) {
#pragma GCC unroll 4
            for (std::size_t i = 0; i < N; ++i) {
                auto state = states[i];
                auto const bits = bitsAt(data, state & positionMask);
                auto const first = tables[i][bits >> shift];
                auto next = state + first;
                if (next < blockEnd) [[likely]] {
                    state = next;
                    next = state + tables[i][bits << (first & 63U) >> shift];
                    if (next < blockEnd) [[likely]] {
                        states[i] = next;
                        continue;
                    }
                }
                auto& walk = *walks[i];
                if (!walk.turn(data, state, next)) {
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
