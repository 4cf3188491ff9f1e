#include "images/DecodeRules.h"
#include <array>
#include <cmath>
#include <vector>

namespace pixelhain {

namespace {

// The source pixels that one target pixel covers along one side, with the share of each.
struct Cover {
    int first = 0;
    std::vector<float> shares;
};

std::vector<Cover> coverOf(int from, int to)
{
    std::vector<Cover> covers(static_cast<std::size_t>(to));
    auto const step = static_cast<double>(from) / to;
    for (int i = 0; i < to; ++i) {
        auto& cover = covers[static_cast<std::size_t>(i)];
        auto const begin = i * step;
        auto const end = std::min<double>(from, (i + 1) * step);
        cover.first = static_cast<int>(begin);
        for (int pixel = cover.first; pixel < end; ++pixel) {
            auto const covered = std::min<double>(end, pixel + 1) - std::max<double>(begin, pixel);
            cover.shares.push_back(static_cast<float>(covered / (end - begin)));
        }
    }
    return covers;
}

void addRow(std::uint8_t const* row, float share, std::vector<Cover> const& covers,
    std::vector<std::array<float, 4>>& sums)
{
    for (std::size_t x = 0; x < covers.size(); ++x) {
        auto const* pixel = row + static_cast<std::size_t>(covers[x].first) * 4;
        for (auto const part : covers[x].shares)
            for (std::size_t channel = 0; channel < 4; ++channel)
                sums[x][channel] += share * part * static_cast<float>(*pixel++);
    }
}

} // namespace

Bitmap redrawScaled(Bitmap const& bitmap, int maxPixel)
{
    auto const size = redrawnSize(bitmap.size, maxPixel);
    if (size == bitmap.size)
        return bitmap;
    auto scaled = Bitmap::allocate(size, bitmap.isOpaque);
    if (scaled.isEmpty())
        return {};
    auto const columns = coverOf(bitmap.size.width, size.width);
    auto const rows = coverOf(bitmap.size.height, size.height);
    std::vector<std::array<float, 4>> sums(columns.size());
    for (int y = 0; y < size.height; ++y) {
        auto const& cover = rows[static_cast<std::size_t>(y)];
        sums.assign(columns.size(), {});
        for (std::size_t i = 0; i < cover.shares.size(); ++i)
            addRow(bitmap.row(cover.first + static_cast<int>(i)), cover.shares[i], columns, sums);
        auto* pixel = scaled.row(y);
        for (auto const& sum : sums)
            for (auto const channel : sum)
                *pixel++ = static_cast<std::uint8_t>(std::lround(channel));
    }
    return scaled;
}

} // namespace pixelhain
