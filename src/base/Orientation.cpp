#include "base/Orientation.h"
#include <algorithm>
#include <cstring>

namespace pixelhain {

namespace {

std::uint32_t pixelAt(std::uint8_t const* at)
{
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, at, sizeof pixel);
    return pixel;
}

// One row of the stored picture lies along a row of the upright one.
void alongRows(Bitmap const& from, Bitmap& to, bool mirrorX, bool mirrorY)
{
    auto const width = static_cast<std::size_t>(from.size.width);
    for (int y = 0; y < from.size.height; ++y) {
        auto const* in = from.row(y);
        auto* out = to.row(mirrorY ? from.size.height - 1 - y : y);
        if (!mirrorX) {
            std::memcpy(out, in, width * 4);
            continue;
        }
        for (std::size_t x = 0; x < width; ++x)
            std::memcpy(out + (width - 1 - x) * 4, in + x * 4, 4);
    }
}

// One row of the stored picture becomes a column: in blocks, so that both sides stay cached.
void acrossRows(Bitmap const& from, Bitmap& to, bool mirrorX, bool mirrorY)
{
    constexpr int block = 16;
    auto const width = to.size.width;
    auto const height = to.size.height;
    for (int top = 0; top < height; top += block) {
        for (int left = 0; left < width; left += block) {
            auto const bottom = std::min(top + block, height);
            auto const right = std::min(left + block, width);
            for (int y = top; y < bottom; ++y) {
                auto* out = to.row(y) + std::ptrdiff_t(left) * 4;
                auto const column = std::ptrdiff_t(mirrorY ? height - 1 - y : y) * 4;
                for (int x = left; x < right; ++x, out += 4) {
                    auto const pixel = pixelAt(from.row(mirrorX ? width - 1 - x : x) + column);
                    std::memcpy(out, &pixel, sizeof pixel);
                }
            }
        }
    }
}

} // namespace

Bitmap upright(Bitmap stored, int orientation)
{
    if (orientation < 2 || orientation > 8 || stored.isEmpty())
        return stored;
    auto turned = Bitmap::allocate(uprightSize(stored.size, orientation), stored.isOpaque);
    if (turned.isEmpty())
        return turned;
    // For 5 to 8: x of the upright picture runs along the stored rows' order, y along a row.
    switch (orientation) {
    case 2:
        alongRows(stored, turned, true, false);
        break;
    case 3:
        alongRows(stored, turned, true, true);
        break;
    case 4:
        alongRows(stored, turned, false, true);
        break;
    case 5:
        acrossRows(stored, turned, false, false);
        break;
    case 6:
        acrossRows(stored, turned, true, false);
        break;
    case 7:
        acrossRows(stored, turned, true, true);
        break;
    default:
        acrossRows(stored, turned, false, true);
        break;
    }
    return turned;
}

} // namespace pixelhain
