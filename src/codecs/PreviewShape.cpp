#include "codecs/PreviewShape.h"
#include <algorithm>
#include <cmath>
#include <cstring>

namespace pixelhain {

namespace {

// Letterboxed thumbnails are those of 160 × 120 and their like.
constexpr int largestWithBars = 640;
constexpr int smallestShown = 16;

bool isNearBlack(Bitmap const& bitmap, int left, int top, int width, int height)
{
    constexpr std::uint64_t level = 24;
    std::uint64_t sum = 0;
    for (int y = top; y < top + height; ++y) {
        auto const* at = bitmap.row(y) + std::ptrdiff_t(left) * 4;
        for (int x = 0; x < width; ++x, at += 4)
            sum += static_cast<std::uint64_t>(std::max({ at[0], at[1], at[2] }));
    }
    return sum <= level * static_cast<std::uint64_t>(width) * static_cast<unsigned>(height);
}

} // namespace

bool hasSameShape(PixelSize preview, PixelSize picture)
{
    auto const across = double(preview.width) * picture.height;
    auto const down = double(preview.height) * picture.width;
    auto const tolerance
        = std::max(0.02 * down, 0.75 * std::max(double(picture.height), double(picture.width)));
    return std::abs(across - down) <= tolerance;
}

PixelSize largestOfShape(PixelSize shape, PixelSize frame)
{
    if (shape.width <= 0 || shape.height <= 0 || frame.width <= 0 || frame.height <= 0)
        return {};
    auto const scale
        = std::min(double(frame.width) / shape.width, double(frame.height) / shape.height);
    auto const scaled = [&](int side, int most) {
        return std::clamp(static_cast<int>(std::lround(side * scale)), 1, most);
    };
    return { scaled(shape.width, frame.width), scaled(shape.height, frame.height) };
}

std::optional<PreviewBars> possibleBars(PixelSize preview, PixelSize picture)
{
    if (preview.longestSide() > largestWithBars || picture.width <= 0 || picture.height <= 0)
        return {};
    PreviewBars bars;
    auto const high = double(preview.width) * picture.height / picture.width;
    auto const wide = double(preview.height) * picture.width / picture.height;
    if (high < preview.height)
        bars.y = static_cast<int>(std::ceil((preview.height - high) / 2));
    else
        bars.x = static_cast<int>(std::ceil((preview.width - wide) / 2));
    auto const shown = withoutBars(preview, bars);
    if (shown.width < smallestShown || shown.height < smallestShown
        || !hasSameShape(shown, picture))
        return {};
    return bars;
}

bool areBarsBlack(Bitmap const& preview, PreviewBars bars)
{
    auto const [width, height] = preview.size;
    // The innermost line may be half picture.
    auto const bar = std::max(bars.x, bars.y) - 1;
    if (bar < 1)
        return true;
    if (bars.y > 0)
        return isNearBlack(preview, 0, 0, width, bar)
            && isNearBlack(preview, 0, height - bar, width, bar);
    return isNearBlack(preview, 0, 0, bar, height)
        && isNearBlack(preview, width - bar, 0, bar, height);
}

Bitmap croppedBars(Bitmap const& preview, PreviewBars bars)
{
    auto cropped = Bitmap::allocate(withoutBars(preview.size, bars), preview.isOpaque);
    for (int y = 0; !cropped.isEmpty() && y < cropped.size.height; ++y) {
        std::memcpy(cropped.row(y), preview.row(y + bars.y) + std::ptrdiff_t(bars.x) * 4,
            static_cast<std::size_t>(cropped.size.width) * 4);
    }
    return cropped;
}

} // namespace pixelhain
