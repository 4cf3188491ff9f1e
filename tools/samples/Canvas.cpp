#include "Canvas.h"

#include "Noise.h"

namespace pixelhain {

Canvas::Canvas(PixelSize size)
    : size_(size)
    , unit_(1.0f / static_cast<float>(size.height))
    , pixels_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height))
{
}

void Canvas::disc(Spot center, float radius, Color color, float opacity, float softness)
{
    auto const edge = std::max(unit_, radius * softness);
    auto const reach = radius + unit_;
    fillWhere({ center.u - reach, center.v - reach }, { center.u + reach, center.v + reach }, color,
        [&](Spot here) {
            auto const distance = std::hypot(here.u - center.u, here.v - center.v);
            return opacity
                * std::clamp((radius - distance) / edge + 0.5f * unit_ / edge, 0.0f, 1.0f);
        });
}

void Canvas::glow(Spot center, float radius, Color color)
{
    auto const right = std::min(size_.width, static_cast<int>((center.u + radius) / unit_) + 1);
    auto const bottom = std::min(size_.height, static_cast<int>((center.v + radius) / unit_) + 1);
    for (auto y = std::max(0, static_cast<int>((center.v - radius) / unit_)); y < bottom; ++y)
        for (auto x = std::max(0, static_cast<int>((center.u - radius) / unit_)); x < right; ++x) {
            auto const here = spot(x, y);
            auto const distance = std::hypot(here.u - center.u, here.v - center.v) / radius;
            auto const light = std::max(0.0f, 1 - distance);
            at(x, y) = at(x, y) + color * (light * light * light);
        }
}

void Canvas::box(Spot from, Spot to, Color color, float opacity)
{
    fillWhere(from, to, color, [&](Spot here) {
        auto const across = std::min(here.u - from.u, to.u - here.u) / unit_ + 0.5f;
        auto const down = std::min(here.v - from.v, to.v - here.v) / unit_ + 0.5f;
        return opacity * std::clamp(std::min(across, down), 0.0f, 1.0f);
    });
}

void Canvas::triangle(Spot a, Spot b, Spot c, Color color)
{
    auto const inside = [](Spot from, Spot to, Spot here) {
        auto const length = std::hypot(to.u - from.u, to.v - from.v);
        return ((to.u - from.u) * (here.v - from.v) - (to.v - from.v) * (here.u - from.u)) / length;
    };
    fillWhere({ std::min({ a.u, b.u, c.u }), std::min({ a.v, b.v, c.v }) },
        { std::max({ a.u, b.u, c.u }), std::max({ a.v, b.v, c.v }) }, color, [&](Spot here) {
            auto const depth
                = std::min({ inside(a, b, here), inside(b, c, here), inside(c, a, here) });
            return std::clamp(depth / unit_ + 0.5f, 0.0f, 1.0f);
        });
}

void Canvas::reflect(float line, Color water, std::uint32_t seed)
{
    auto const shore = static_cast<int>(line / unit_);
    for (auto y = std::max(0, shore); y < size_.height; ++y) {
        auto const depth = static_cast<float>(y - shore) * unit_;
        for (auto x = 0; x < size_.width; ++x) {
            auto const here = spot(x, y);
            auto const wave = noise(here.u * 14, 60 * depth / (0.1f + depth), seed) - 0.5f;
            auto const shift = static_cast<int>(wave * (0.01f + 0.09f * depth) / unit_);
            auto const from = std::clamp(2 * shore - y + shift, 0, std::max(0, shore - 1));
            at(x, y) = mix(at(x, from) * 0.86f, water, 0.18f + 0.5f * depth + 0.2f * wave);
        }
    }
}

void Canvas::grain(float strength, std::uint32_t seed)
{
    for (auto y = 0; y < size_.height; ++y)
        for (auto x = 0; x < size_.width; ++x) {
            auto const light = strength * (hashed(x, y, seed) - 0.5f);
            auto const warm = 0.5f * strength * (hashed(x, y, seed + 1) - 0.5f);
            at(x, y) = at(x, y) + Color { light + warm, light, light - warm };
        }
}

} // namespace pixelhain
