#include "Noise.h"
#include "Scenery.h"
#include "Scenes.h"
#include <numbers>

namespace pixelhain {

namespace {

/// A loop of colors; one turn for `at` from 0 to 1.
Color wheel(float at, std::uint32_t seed)
{
    auto const part = [&](int index) {
        auto const phase
            = hashed(0, 1, seed) + 0.13f * static_cast<float>(index) * (0.6f + hashed(1, 1, seed));
        return 0.52f + 0.4f * std::cos(2 * std::numbers::pi_v<float> * (at + phase));
    };
    return { part(0), part(1), part(2) };
}

struct Emblem {
    float leaf;
    float disc;
};

Emblem emblemAt(Spot here, float aspect)
{
    auto const u = (here.u - aspect / 2) / 0.42f;
    auto const v = (here.v - 0.5f) / 0.42f;
    auto const along = u * 0.7071f - v * 0.7071f;
    auto const across = u * 0.7071f + v * 0.7071f;
    auto const width = 0.42f * std::max(0.0f, 1 - along * along * 1.6f);
    auto const leaf = smoothStep(0, 0.02f, width - std::abs(across))
        * smoothStep(0, 0.015f, std::abs(across) - 0.02f);
    return { leaf, smoothStep(0, 0.015f, 1 - std::hypot(u, v)) };
}

} // namespace

Canvas drawMarble(PixelSize size, std::uint32_t seed, float phase)
{
    Canvas canvas(size);
    canvas.fill([&](Spot here) {
        auto const u = here.u * 1.6f;
        auto const v = here.v * 1.6f;
        auto const first = layeredNoise(u, v, seed, 3);
        auto const second = layeredNoise(u + 5, v + 2, seed + 7, 3);
        auto const folded = layeredNoise(u + 4 * first, v + 4 * second, seed + 11, 4);
        auto const vein = smoothStep(0.03f, 0, std::abs(folded - 0.5f));
        return mix(
            wheel(folded * 1.4f + first * 0.4f + phase, seed), { .98f, .93f, .8f }, vein * 0.7f);
    });
    canvas.grain(0.015f, seed);
    return canvas;
}

Canvas drawRings(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    auto const cells = 3 + static_cast<int>(seed % 3);
    canvas.fill([&](Spot here) {
        auto const u = here.u * static_cast<float>(cells);
        auto const v = here.v * static_cast<float>(cells);
        auto const column = static_cast<int>(u);
        auto const row = static_cast<int>(v);
        auto const away
            = std::hypot(u - static_cast<float>(column) - 0.5f, v - static_cast<float>(row) - 0.5f);
        auto const ring = std::min(4.0f, std::floor(away * 8.5f));
        auto const washed = 0.9f + 0.2f * (layeredNoise(here.u * 9, here.v * 9, seed, 4) - 0.5f);
        return wheel(hashed(column * 7 + static_cast<int>(ring), row, seed), seed) * washed;
    });
    return canvas;
}

Canvas drawEmblem(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    canvas.fill([&, aspect = canvas.aspect()](Spot here) {
        auto const shape = emblemAt(here, aspect);
        auto const ground = mix({ .16f, .42f, .3f }, { .07f, .22f, .2f }, here.v);
        auto const green = mix({ .78f, .92f, .5f }, { .5f, .76f, .34f }, here.u / aspect);
        return mix(ground, green, shape.leaf)
            * (0.98f + 0.04f * noise(here.u * 200, here.v * 200, seed));
    });
    return canvas;
}

float emblemOpacity(Spot spot, float aspect)
{
    auto const shape = emblemAt(spot, aspect);
    // A soft shadow to the lower right shows partly transparent pixels.
    auto const shadow = smoothStep(1.16f, 0.86f,
        std::hypot((spot.u - aspect / 2) / 0.42f - 0.06f, (spot.v - 0.5f) / 0.42f - 0.1f));
    return std::max(shape.disc, shadow * 0.45f);
}

} // namespace pixelhain
