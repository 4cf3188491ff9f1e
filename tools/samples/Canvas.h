#pragma once
#include "base/Geometry.h"
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pixelhain {

/// Red, green and blue in 0…1, as sRGB stores them.
struct Color {
    float red = 0;
    float green = 0;
    float blue = 0;

    friend Color operator+(Color a, Color b)
    {
        return { a.red + b.red, a.green + b.green, a.blue + b.blue };
    }
    friend Color operator*(Color a, float factor)
    {
        return { a.red * factor, a.green * factor, a.blue * factor };
    }
};

inline Color mix(Color a, Color b, float t)
{
    t = std::clamp(t, 0.0f, 1.0f);
    return a * (1 - t) + b * t;
}

/// 0 below `low`, 1 above `high`, smooth between.
inline float smoothStep(float low, float high, float value)
{
    auto const t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

/// A place on the canvas. One unit is its height: u runs over 0…aspect(), v from 0 at the top to 1.
struct Spot {
    float u = 0;
    float v = 0;
};

/// A picture being drawn. Shapes have soft edges of a pixel and may reach beyond the canvas.
class Canvas {
public:
    explicit Canvas(PixelSize size);

    PixelSize size() const { return size_; }
    float aspect() const { return static_cast<float>(size_.width) * unit_; }
    Color& at(int x, int y) { return pixels_[index(x, y)]; }
    Color at(int x, int y) const { return pixels_[index(x, y)]; }

    /// Gives every pixel the color that `paint(Spot)` says.
    template <typename Paint> void fill(Paint paint)
    {
        for (auto y = 0; y < size_.height; ++y)
            for (auto x = 0; x < size_.width; ++x)
                at(x, y) = paint(spot(x, y));
    }

    /// Paints all that lies below the line `height(u)`; `paint(Spot, depth)` with the depth under
    /// it.
    template <typename Height, typename Paint> void fillBelow(Height height, Paint paint)
    {
        for (auto x = 0; x < size_.width; ++x) {
            auto const line = height(spot(x, 0).u);
            auto const first = std::max(0, static_cast<int>(line / unit_) - 1);
            for (auto y = first; y < size_.height; ++y) {
                auto const here = spot(x, y);
                blend(x, y, paint(here, here.v - line), (here.v - line) / unit_ + 0.5f);
            }
        }
    }

    /// Paints where `coverage(Spot)` says so (0…1), looking only at the given rectangle.
    template <typename Coverage> void fillWhere(Spot from, Spot to, Color color, Coverage coverage)
    {
        auto const right = std::min(size_.width, static_cast<int>(to.u / unit_) + 2);
        auto const bottom = std::min(size_.height, static_cast<int>(to.v / unit_) + 2);
        for (auto y = std::max(0, static_cast<int>(from.v / unit_) - 1); y < bottom; ++y)
            for (auto x = std::max(0, static_cast<int>(from.u / unit_) - 1); x < right; ++x)
                blend(x, y, color, coverage(spot(x, y)));
    }

    void blend(int x, int y, Color color, float coverage)
    {
        if (coverage > 0)
            at(x, y) = mix(at(x, y), color, coverage);
    }

    /// `softness` is the share of the radius over which the edge fades.
    void disc(Spot center, float radius, Color color, float opacity = 1, float softness = 0);
    /// Adds light, strongest in the middle.
    void glow(Spot center, float radius, Color color);
    void box(Spot from, Spot to, Color color, float opacity = 1);
    /// Corners clockwise.
    void triangle(Spot a, Spot b, Spot c, Color color);
    /// Turns all below `line` into a rippled, darker mirror of what stands above it.
    void reflect(float line, Color water, std::uint32_t seed);
    /// Sensor-like noise.
    void grain(float strength, std::uint32_t seed);

    /// The size of a pixel in units.
    float unit() const { return unit_; }
    Spot spot(int x, int y) const
    {
        return { (static_cast<float>(x) + 0.5f) * unit_, (static_cast<float>(y) + 0.5f) * unit_ };
    }

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(size_.width)
            + static_cast<std::size_t>(x);
    }

    PixelSize size_;
    float unit_;
    std::vector<Color> pixels_;
};

} // namespace pixelhain
