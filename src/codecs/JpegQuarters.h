#pragma once
#include "codecs/JpegWalk.h"
#include <algorithm>
#include <cstdint>
#include <optional>

namespace pixelhain {

/// Reads the other coefficients of a block, from the bit `position` on, and brings it to 2 × 2
/// samples. Returns the position behind it, or nothing where there is no code.
[[nodiscard]] std::optional<std::uint32_t> readQuarters(std::uint8_t const* data,
    std::uint32_t position, JpegBlockCodes const& codes, JpegQuarters& quarters);

/// The sample, less 128, of a grey level less 128. Levels that no encoder writes wrap around before
/// they are kept within the range, as in the library.
[[nodiscard]] inline std::int8_t levelSample(std::int64_t level)
{
    auto const wrapped = static_cast<int>((static_cast<std::uint64_t>(level) + 512U) & 1023U) - 512;
    return static_cast<std::int8_t>(std::clamp(wrapped, -128, 127));
}

/// The same of a block's mean in eighths of a level, and of what a quarter has beside it.
[[nodiscard]] inline std::int8_t quarterSample(std::int32_t mean, std::int32_t quarter)
{
    constexpr int meanShift = 17;
    constexpr int shift = 20;
    auto const sum = std::int64_t { mean } * (1 << meanShift) + quarter;
    return levelSample((sum + (1 << (shift - 1))) >> shift);
}

/// The same of a block that is one sample.
[[nodiscard]] inline std::int8_t meanSample(std::int32_t mean)
{
    return levelSample((std::int64_t { mean } + 4) >> 3);
}

} // namespace pixelhain
