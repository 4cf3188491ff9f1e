#pragma once
#include "codecs/Animation.h"
#include "support/AnimationWriters.h"
#include "support/MemoryBytes.h"
#include <vector>

namespace pixelhain {

inline std::unique_ptr<AnimationSource> animation(FileBytes bytes, int maxPixel = 0)
{
    return openAnimation(memoryBytes(std::move(bytes)), maxPixel);
}

/// The frames up to the end of the loop, or of the play.
inline std::vector<AnimationFrame> framesOf(AnimationSource& source)
{
    std::vector<AnimationFrame> frames;
    for (;;) {
        auto step = source.nextFrame();
        auto* const frame = std::get_if<AnimationFrame>(&step);
        if (frame == nullptr)
            return frames;
        frames.push_back(std::move(*frame));
    }
}

inline std::vector<AnimationFrame> framesIn(FileBytes bytes, int maxPixel = 0)
{
    auto const source = animation(std::move(bytes), maxPixel);
    return source ? framesOf(*source) : std::vector<AnimationFrame> {};
}

/// A frame of one colour, as the writer of its format takes it.
template <typename Frame> Frame filledFrame(std::uint32_t color, int x, int y, PixelSize size)
{
    Frame frame;
    frame.pixels = RgbaPixels::filled(size, color);
    frame.x = x;
    frame.y = y;
    return frame;
}

/// R, G, B, A of one pixel, premultiplied, as a number.
inline std::uint32_t colorAt(Bitmap const& bitmap, int x, int y)
{
    auto const* at = bitmap.row(y) + std::ptrdiff_t(x) * 4;
    return std::uint32_t { at[2] } << 24 | std::uint32_t { at[1] } << 16
        | std::uint32_t { at[0] } << 8 | at[3];
}

constexpr std::uint32_t red = 0xFF0000FF;
constexpr std::uint32_t green = 0x00FF00FF;
constexpr std::uint32_t blue = 0x0000FFFF;
constexpr std::uint32_t nothing = 0;

} // namespace pixelhain
