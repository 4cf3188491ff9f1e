#include "codecs/JpegQuarters.h"
#include "codecs/CodedBits.h"
#include <algorithm>

namespace pixelhain {

namespace {

// Where the coefficients stand in their block, row by row.
constexpr std::array<std::uint8_t, 64> places { 0, 1, 8, 16, 9, 2, 3, 10, 17, 24, 32, 25, 18, 11, 4,
    5, 12, 19, 26, 33, 40, 48, 41, 34, 27, 20, 13, 6, 7, 14, 21, 28, 35, 42, 49, 56, 57, 50, 43, 36,
    29, 22, 15, 23, 30, 37, 44, 51, 58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62,
    63 };

using Coefficients = std::array<std::int16_t, 64>;

// The first four samples of the cosine of each frequency add up to these, times the root of two, in
// 1/2^13: four times what the halves of a row differ by from its mean. Even frequencies add up to
// nothing.
constexpr int one = 13;
constexpr int between = 2; // more bits than whole levels between the columns and the rows

std::int64_t halves(
    std::int64_t first, std::int64_t third, std::int64_t fifth, std::int64_t seventh)
{
    return first * 29692 - third * 10426 + fifth * 6967 - seventh * 5906;
}

std::int64_t rounded(std::int64_t value, int shift)
{
    return (value + (std::int64_t { 1 } << (shift - 1))) >> shift;
}

// The rounding is that of the library, so that both come to the same sample.
void bringToQuarters(Coefficients const& block, JpegQuarters& quarters)
{
    constexpr std::array<std::size_t, 5> columns { 0, 1, 3, 5, 7 };
    std::array<std::array<std::int64_t, 5>, 2> rows {};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        auto const* column = block.data() + columns[i];
        auto const whole = i == 0 ? 0 : std::int64_t { column[0] } << (one + 2);
        auto const half = halves(column[8], column[24], column[40], column[56]);
        rows[0][i] = rounded(whole + half, one - between + 2);
        rows[1][i] = rounded(whole - half, one - between + 2);
    }
    for (std::size_t y = 0; y < 2; ++y) {
        auto const& row = rows[y];
        auto const whole = row[0] << (one + 2);
        auto const half = halves(row[1], row[2], row[3], row[4]);
        quarters[2 * y] = static_cast<std::int32_t>(whole + half);
        quarters[2 * y + 1] = static_cast<std::int32_t>(whole - half);
    }
}

} // namespace

std::optional<std::uint32_t> readQuarters(std::uint8_t const* data, std::uint32_t position,
    JpegBlockCodes const& codes, JpegQuarters& quarters)
{
    Coefficients block {};
    bool isFlat = true;
    for (int k = 1; k < 64; ++k) {
        auto const bits = bitsAt(data, position);
        auto const found = codes.others->find(bits);
        if (found.bits == 0)
            return {};
        int const valueBits = found.symbol & 15;
        int const zeros = found.symbol >> 4;
        position += static_cast<std::uint32_t>(found.bits + valueBits);
        if (valueBits == 0 && zeros != 15)
            break;
        k += zeros;
        if (valueBits == 0)
            continue;
        // The library writes a value behind the last coefficient into that one.
        auto const place = static_cast<std::size_t>(std::min(k, 63));
        block[places[place]] = static_cast<std::int16_t>(
            codedNumber(bits << found.bits, valueBits) * (*codes.steps)[place]);
        isFlat = false;
    }
    if (isFlat)
        quarters = {};
    else
        bringToQuarters(block, quarters);
    return position;
}

} // namespace pixelhain
