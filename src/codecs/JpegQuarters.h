#pragma once
#include "codecs/JpegWalk.h"
#include <cstdint>
#include <optional>

namespace pixelhain {

/// Reads the other coefficients of a block, from the bit `position` on, and brings it to 2 × 2
/// samples. Returns the position behind it, or nothing where there is no code.
[[nodiscard]] std::optional<std::uint32_t> readQuarters(std::uint8_t const* data,
    std::uint32_t position, JpegBlockCodes const& codes, JpegQuarters& quarters);

/// The sample, less 128, of a block's mean in eighths of a grey level and what a quarter has beside
/// it.
[[nodiscard]] std::int8_t quarterSample(std::int32_t mean, std::int32_t quarter);

/// The same of a block that is one sample.
[[nodiscard]] std::int8_t meanSample(std::int32_t mean);

} // namespace pixelhain
