#include "Scenery.h"

#include "Noise.h"
#include "Scenes.h"
#include <array>

namespace pixelhain {

SkyColors skyOf(std::uint32_t seed)
{
    static constexpr std::array<SkyColors, 5> hours { {
        { { .16f, .42f, .78f }, { .42f, .68f, .92f }, { .82f, .91f, .97f } },
        { { .20f, .38f, .66f }, { .58f, .72f, .86f }, { .97f, .90f, .76f } },
        { { .17f, .16f, .38f }, { .72f, .36f, .44f }, { .99f, .70f, .36f } },
        { { .34f, .42f, .66f }, { .82f, .68f, .76f }, { .99f, .86f, .72f } },
        { { .06f, .17f, .38f }, { .24f, .47f, .66f }, { .96f, .76f, .58f } },
    } };
    return hours[seed % hours.size()];
}

void drawSky(Canvas& canvas, SkyColors const& colors, float horizon)
{
    canvas.fill([&](Spot here) {
        auto const height = here.v / horizon;
        return height < 0.55f ? mix(colors.top, colors.middle, height / 0.55f)
                              : mix(colors.middle, colors.horizon, (height - 0.55f) / 0.45f);
    });
}

void drawClouds(Canvas& canvas, float horizon, float cover, Color light, std::uint32_t seed)
{
    auto const size = canvas.size();
    auto const bottom = std::min(size.height, static_cast<int>(horizon / canvas.unit()));
    for (auto y = 0; y < bottom; ++y) {
        // Clouds lie on a plane overhead: nearer the horizon they are farther away.
        auto const distance = 0.35f / (1.08f - canvas.spot(0, y).v / horizon);
        for (auto x = 0; x < size.width; ++x) {
            auto const here = canvas.spot(x, y);
            auto const across = (here.u - canvas.aspect() / 2) * (0.6f + distance);
            auto const mass = layeredNoise(across * 2.2f + 40, distance * 5, seed, 5);
            auto const body = smoothStep(0.66f - 0.34f * cover, 0.86f - 0.3f * cover, mass);
            auto const shade = mix(light, light * 0.84f, smoothStep(0.55f, 0.85f, mass));
            canvas.blend(x, y, shade, body * 0.9f);
        }
    }
}

void drawStars(Canvas& canvas, float lowest, int count, std::uint32_t seed)
{
    Dice dice(seed);
    for (auto star = 0; star < count; ++star) {
        Spot const place { dice.between(0, canvas.aspect()), dice.between(0, lowest) };
        auto const magnitude = dice.between(0, 1);
        auto const color = mix({ .75f, .84f, 1 }, { 1, .93f, .8f }, dice.between(0, 1));
        canvas.disc(place, 0.0006f + 0.0015f * magnitude * magnitude * magnitude, color,
            (0.35f + 0.65f * magnitude) * (1 - place.v / lowest * 0.6f), 0.6f);
    }
}

void drawSun(Canvas& canvas, Spot center, float radius, Color color)
{
    canvas.glow(center, radius * 14, color * 0.34f);
    canvas.glow(center, radius * 4, color * 0.45f);
    canvas.disc(center, radius, mix(color, { 1, 1, 1 }, 0.65f), 1, 0.12f);
}

float ridgeHeight(Ridge const& ridge, float u, std::uint32_t seed)
{
    return ridge.crest
        + ridge.rise * (1 - 2 * layeredNoise(u * ridge.width, 3, seed, ridge.roughness));
}

void drawRidge(Canvas& canvas, Ridge const& ridge, Color crest, Color foot, std::uint32_t seed)
{
    canvas.fillBelow([&](float u) { return ridgeHeight(ridge, u, seed); },
        [&](Spot here, float depth) {
            auto const texture = layeredNoise(here.u * 40, here.v * 70, seed + 9, 3) - 0.5f;
            return mix(crest, foot, depth / 0.3f) * (1 + 0.22f * texture);
        });
}

void drawConifers(Canvas& canvas, float ground, float tallest, Color color, std::uint32_t seed)
{
    Dice dice(seed);
    auto const step = tallest * 0.16f;
    for (auto u = -step; u < canvas.aspect() + step; u += step * dice.between(0.5f, 1.4f)) {
        auto const height = tallest * dice.between(0.45f, 1);
        auto const shade = color * dice.between(0.75f, 1.2f);
        auto const foot = ground + tallest * 0.15f;
        for (auto tier = 0; tier < 5; ++tier) {
            auto const share = static_cast<float>(tier) / 5;
            auto const half = height * (0.05f + 0.13f * share);
            auto const top = foot - height * (1 - share * 0.85f);
            canvas.triangle({ u, top }, { u + half, top + height * 0.3f },
                { u - half, top + height * 0.3f }, shade);
        }
    }
    canvas.fillBelow([&](float u) { return ground + 0.01f * noise(u * 20, 1, seed); },
        [&](Spot, float) { return color * 0.8f; });
}

Canvas drawScene(Scene scene, PixelSize size, std::uint32_t seed)
{
    switch (scene) {
    case Scene::sea:
        return drawSea(size, seed);
    case Scene::lighthouse:
        return drawLighthouse(size, seed);
    case Scene::mountains:
        return drawMountains(size, seed, false);
    case Scene::lake:
        return drawMountains(size, seed, true);
    case Scene::city:
        return drawCity(size, seed, false);
    case Scene::fireworks:
        return drawCity(size, seed, true);
    case Scene::flowers:
        return drawFlowers(size, seed);
    case Scene::poppies:
        return drawPoppies(size, seed);
    case Scene::forest:
        return drawForest(size, seed);
    case Scene::northernLights:
        return drawNorthernLights(size, seed);
    case Scene::dunes:
        return drawDunes(size, seed);
    case Scene::balloons:
        return drawBalloons(size, seed);
    case Scene::marble:
        return drawMarble(size, seed, 0);
    case Scene::rings:
        return drawRings(size, seed);
    case Scene::emblem:
        return drawEmblem(size, seed);
    }
    return Canvas(size);
}

} // namespace pixelhain
