#include "Noise.h"
#include "Scenery.h"
#include <numbers>

namespace pixelhain {

namespace {

constexpr SkyColors nightSky { { .02f, .03f, .10f }, { .07f, .09f, .24f }, { .34f, .24f, .36f } };

void drawBuilding(Canvas& canvas, Spot corner, float width, float foot, float near, Dice& dice)
{
    auto const wall = mix({ .17f, .15f, .26f }, { .04f, .045f, .08f }, near);
    canvas.box(corner, { corner.u + width, foot }, wall);
    if (dice.below(3) == 0)
        canvas.box({ corner.u + width * 0.48f, corner.v - 0.06f },
            { corner.u + width * 0.52f, corner.v }, wall);
    auto const step = 0.011f + 0.008f * near;
    auto const warm = dice.between(0.2f, 0.65f);
    for (auto v = corner.v + step; v < foot - step; v += step * 1.4f)
        for (auto u = corner.u + step * 0.6f; u < corner.u + width - step; u += step) {
            if (dice.between(0, 1) > warm)
                continue;
            auto const light
                = mix({ 1, .82f, .46f }, { .8f, .9f, 1 }, dice.between(0, 1) > 0.8f ? 1 : 0);
            canvas.box(
                { u, v }, { u + step * 0.55f, v + step * 0.8f }, light, dice.between(0.35f, 1));
        }
}

void drawSkyline(Canvas& canvas, float foot, std::uint32_t seed)
{
    Dice dice(seed);
    for (auto row = 0; row < 3; ++row) {
        auto const near = static_cast<float>(row) / 2;
        auto u = -0.05f;
        while (u < canvas.aspect()) {
            auto const width = dice.between(0.05f, 0.13f);
            auto const middle = 1 - std::abs(u / canvas.aspect() - 0.5f);
            auto const height = dice.between(0.12f, 0.5f) * middle * (1.15f - 0.45f * near);
            drawBuilding(canvas, { u, foot - height }, width, foot, near, dice);
            u += width * dice.between(0.85f, 1.3f);
        }
    }
}

void drawBurst(Canvas& canvas, Spot center, float radius, Color color, Dice& dice)
{
    canvas.glow(center, radius * 1.6f, color * 0.3f);
    auto const rays = 34 + dice.below(20);
    for (auto ray = 0; ray < rays; ++ray) {
        auto const angle = 2
            * std::numbers::pi_v<float> * (static_cast<float>(ray) + dice.between(0, 0.7f))
            / static_cast<float>(rays);
        auto const reach = radius * dice.between(0.55f, 1);
        for (auto spark = 3; spark < 26; ++spark) {
            auto const share = static_cast<float>(spark) / 25;
            Spot const place { center.u + std::cos(angle) * reach * share,
                center.v + std::sin(angle) * reach * share + 0.25f * radius * share * share };
            canvas.disc(place, 0.0012f + 0.0022f * share,
                mix({ 1, .98f, .9f }, color, share * 1.4f), 0.25f + 0.75f * share, 0.5f);
        }
    }
}

float curtain(Spot here, float base, std::uint32_t seed)
{
    auto const fold = base + 0.22f * (layeredNoise(here.u * 1.3f, 1, seed, 3) - 0.5f)
        + 0.05f * std::sin(here.u * 9 + 6 * noise(here.u * 2, 4, seed));
    auto const above = fold - here.v;
    auto const rays = 0.45f + 0.55f * layeredNoise(here.u * 34, here.v * 1.2f, seed + 2, 3);
    return above > 0 ? std::exp(-above * 5.5f) * rays : std::exp(above * 42) * rays;
}

} // namespace

Canvas drawCity(PixelSize size, std::uint32_t seed, bool hasFireworks)
{
    Canvas canvas(size);
    Dice dice(seed + 3);
    auto const foot = 0.74f;
    drawSky(canvas, nightSky, foot);
    drawStars(canvas, 0.6f, 260, seed);
    if (hasFireworks) {
        static constexpr Color paints[] = { { 1, .35f, .3f }, { .45f, .75f, 1 }, { 1, .8f, .3f },
            { .5f, 1, .55f }, { .95f, .5f, 1 } };
        for (auto burst = 0; burst < 5; ++burst)
            drawBurst(canvas,
                { canvas.aspect() * (0.12f + 0.19f * static_cast<float>(burst))
                        + dice.between(-0.05f, 0.05f),
                    dice.between(0.12f, 0.36f) },
                dice.between(0.1f, 0.22f), paints[(burst + static_cast<int>(seed)) % 5], dice);
    } else {
        Spot const moon { canvas.aspect() * dice.between(0.15f, 0.85f), dice.between(0.1f, 0.25f) };
        canvas.glow(moon, 0.4f, { .22f, .22f, .26f });
        canvas.disc(moon, 0.045f, { .97f, .95f, .86f });
        canvas.disc({ moon.u + 0.02f, moon.v - 0.008f }, 0.038f, { .09f, .1f, .24f });
    }
    drawSkyline(canvas, foot, seed);
    canvas.reflect(foot, { .03f, .04f, .1f }, seed);
    canvas.grain(0.02f, seed);
    return canvas;
}

Canvas drawNorthernLights(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    drawSky(canvas, { { .01f, .02f, .07f }, { .03f, .07f, .16f }, { .08f, .2f, .26f } }, 0.8f);
    drawStars(canvas, 0.75f, 420, seed);
    canvas.fill([&, previous = Canvas(canvas)](Spot here) {
        auto const x = static_cast<int>(here.u / canvas.unit());
        auto const y = static_cast<int>(here.v / canvas.unit());
        auto const low = curtain(here, 0.56f, seed);
        auto const high = curtain(here, 0.36f, seed + 40);
        auto const tint = std::clamp((0.55f - here.v) * 2.2f, 0.0f, 1.0f);
        auto const light = mix({ .16f, .95f, .5f }, { .5f, .3f, .85f }, tint);
        return previous.at(x, y) + light * (0.8f * low + 0.45f * high);
    });
    drawRidge(canvas, { 0.72f, 0.09f, 1.6f, 5 }, { .2f, .3f, .4f }, { .07f, .12f, .2f }, seed + 1);
    drawRidge(
        canvas, { 0.84f, 0.05f, 1.1f, 3 }, { .5f, .64f, .72f }, { .2f, .32f, .44f }, seed + 2);
    drawConifers(canvas, 0.97f, 0.26f, { .02f, .05f, .06f }, seed + 3);
    canvas.grain(0.03f, seed);
    return canvas;
}

} // namespace pixelhain
