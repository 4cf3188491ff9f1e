#pragma once
#include <bit>
#include <cstdint>
#include <cstring>

namespace pixelhain {

/// The bits from `position` on, the first at the top; at least 57 of them are right. Reads eight
/// bytes.
[[nodiscard]] inline std::uint64_t bitsAt(std::uint8_t const* data, std::uint32_t position)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, data + (position >> 3), sizeof bits);
    if constexpr (std::endian::native == std::endian::little)
        bits = __builtin_bswap64(bits);
    return bits << (position & 7U);
}

/// The number that the first `count` bits, at most 15, stand for behind a code: the lower half of
/// them counts from below.
[[nodiscard]] inline int codedNumber(std::uint64_t bits, int count)
{
    if (count == 0)
        return 0;
    auto const number = static_cast<int>(bits >> (64 - count));
    return number >> (count - 1) != 0 ? number : number - (1 << count) + 1;
}

} // namespace pixelhain
