#pragma once
#include "codecs/HuffmanLookup.h"
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pixelhain {

/// The codes of a component in a sequential scan.
struct JpegBlockCodes {
    HuffmanLookup const* means = nullptr;
    HuffmanLookup const* others = nullptr;
    NumberTable const* meanNumbers = nullptr;
    SkipTable const* skips = nullptr;
    /// Steps of the coefficients where the block is brought to 2 × 2 samples; null where its mean
    /// is enough.
    std::array<std::int16_t, 64> const* steps = nullptr;
};

/// What a sequential scan repeats: the blocks of one unit.
struct JpegUnit {
    static constexpr std::size_t mostBlocks = 10;

    std::array<JpegBlockCodes, mostBlocks> blocks {};
    std::size_t count = 0;
    std::size_t quartered = 0; ///< how many of them are brought to 2 × 2 samples
};

/// What the four quarters of a block have beside its mean, in 1/2^20 of a grey level; the upper row
/// first.
using JpegQuarters = std::array<std::int32_t, 4>;

/// A walk over the coded units of a sequential scan that looks at the means of the blocks and
/// passes over what else there is. Several walks through different parts of the same bytes go on
/// side by side, because each waits most of its time for its last look.
class JpegWalk {
public:
    /// Bits that a walk can reach over.
    static constexpr unsigned positionBits = 24;
    /// The most bytes that one unit can take, whatever it says.
    static constexpr std::size_t mostUnitBytes = JpegUnit::mostBlocks * 64 * 4;

    /// Room for `mostUnits`.
    JpegWalk(JpegUnit const& unit, std::uint32_t mostUnits);

    /// Begins a unit at the bit `position` of `data`; the walk ends in front of the first unit that
    /// begins at `limit` or behind, or after `most` units. Behind `limit` there must be
    /// `mostUnitBytes` and 16 more bytes.
    void begin(
        std::uint8_t const* data, std::uint32_t position, std::uint32_t limit, std::uint32_t most);

    /// Whether it has ended; if not, `run` goes on.
    [[nodiscard]] bool isDone() const { return isDone_; }
    /// Whether it ended at bits that are no code. The unit in which they stand does not count.
    [[nodiscard]] bool isLost() const { return isLost_; }

    [[nodiscard]] std::uint32_t units() const { return units_; }
    [[nodiscard]] std::uint32_t limit() const { return limit_; }
    [[nodiscard]] std::uint32_t position() const { return position_; } ///< where it ended
    /// Where the unit begins; of the one behind the last, where that ended.
    [[nodiscard]] std::uint32_t start(std::uint32_t unit) const { return starts_[unit]; }
    /// By how much the mean of each of the unit's blocks differs from the one before of the same
    /// component, in steps.
    [[nodiscard]] std::int16_t const* differences(std::uint32_t unit) const
    {
        return differences_.data() + std::size_t { unit } * unit_->count;
    }
    [[nodiscard]] JpegQuarters const* quarters(std::uint32_t unit) const
    {
        return quarters_.data() + std::size_t { unit } * unit_->quartered;
    }

    using Kernel = void (*)(std::uint8_t const* data, JpegWalk* const* walks);
    /// How many can go on side by side.
    static constexpr std::size_t mostTogether = 4;
    /// Lets the walks go on until at least one of them has ended; [0] is for one walk, and so on.
    using Kernels = std::array<Kernel, mostTogether>;
    [[nodiscard]] static Kernels const& kernels(); ///< the fastest for this processor
    [[nodiscard]] static Kernels const& plainKernels();

private:
    friend struct JpegWalkKernels;

    bool turn(std::uint8_t const* data, std::uint32_t state, std::uint32_t next);
    bool turnOdd(std::uint8_t const* data, std::uint32_t state);
    bool passBlock(std::uint32_t position);
    bool endBlock(std::uint8_t const* data, std::uint32_t position);
    bool beginBlock(std::uint8_t const* data, std::uint32_t position);
    bool beginOddBlock(std::uint8_t const* data, std::uint32_t position);
    bool lose(std::uint32_t position);

    JpegUnit const* unit_;
    std::uint32_t room_;
    /// The next coefficient of the block, and above it the bit that comes next.
    std::uint32_t state_ = 0;
    std::uint16_t const* table_ = nullptr;
    std::size_t block_ = 0;
    std::uint32_t units_ = 0;
    std::uint32_t limit_ = 0;
    std::uint32_t most_ = 0;
    std::uint32_t position_ = 0;
    bool isDone_ = true;
    bool isLost_ = false;
    std::int16_t* nextDifference_ = nullptr;
    JpegQuarters* nextQuarters_ = nullptr;
    std::vector<std::uint32_t> starts_;
    std::vector<std::int16_t> differences_;
    std::vector<JpegQuarters> quarters_;
};

} // namespace pixelhain
