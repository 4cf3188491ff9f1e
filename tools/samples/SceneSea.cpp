#include "Noise.h"
#include "Scenery.h"

namespace pixelhain {

namespace {

struct Shore {
    float horizon;
    Spot sun;
    SkyColors sky;
    std::uint32_t seed;
};

Color waterAt(Shore const& shore, Spot here)
{
    auto const depth = (here.v - shore.horizon) / (1 - shore.horizon);
    auto const distance = 1 / (depth + 0.06f);
    auto const waves = layeredNoise(
        here.u * 3 * (1 + distance * 0.5f), 22 * std::log(depth + 0.03f), shore.seed, 3);
    auto const deep = mix(shore.sky.middle * 0.55f, { .04f, .24f, .32f }, depth * 0.9f);
    auto const color = mix(deep, shore.sky.horizon, smoothStep(0.42f, 0.8f, waves) * 0.75f);
    auto const aside = std::abs(here.u - shore.sun.u) / (0.05f + 0.2f * depth);
    auto const glitter = smoothStep(0.5f, 0.62f, waves) * std::max(0.0f, 1 - aside);
    return mix(color, { 1, .93f, .76f }, glitter);
}

void drawWater(Canvas& canvas, Shore const& shore)
{
    canvas.fillBelow([&](float) { return shore.horizon; },
        [&](Spot here, float) { return waterAt(shore, here); });
}

void drawBeach(Canvas& canvas, Shore const& shore)
{
    auto const line = [&](float u) {
        return 0.93f - 0.16f * smoothStep(0, canvas.aspect(), u)
            + 0.05f * (layeredNoise(u * 2.5f, 5, shore.seed, 3) - 0.5f);
    };
    canvas.fillBelow(line, [&](Spot here, float depth) {
        auto const sand = mix({ .58f, .47f, .34f }, { .93f, .83f, .64f }, depth * 12);
        auto const ripples = layeredNoise(here.u * 18, here.v * 60, shore.seed + 3, 3);
        auto const foam = smoothStep(0.014f, 0.002f, depth)
            + 0.6f * smoothStep(0.005f, 0, std::abs(depth - 0.022f - 0.01f * ripples));
        auto const lit = mix(sand, shore.sky.horizon, 0.22f) * (0.84f + 0.3f * ripples);
        return mix(lit, { .98f, .98f, .96f }, foam);
    });
}

void drawBoat(Canvas& canvas, Spot keel, float height, Color sail)
{
    canvas.triangle({ keel.u, keel.v - height },
        { keel.u + height * 0.42f, keel.v - height * 0.14f }, { keel.u, keel.v - height * 0.14f },
        sail);
    canvas.triangle({ keel.u - height * 0.03f, keel.v - height * 0.86f },
        { keel.u - height * 0.03f, keel.v - height * 0.14f },
        { keel.u - height * 0.3f, keel.v - height * 0.14f }, sail * 0.86f);
    canvas.triangle({ keel.u - height * 0.34f, keel.v - height * 0.1f },
        { keel.u + height * 0.5f, keel.v - height * 0.1f },
        { keel.u + height * 0.1f, keel.v + height * 0.1f }, { .22f, .14f, .12f });
}

Shore makeShore(Canvas const& canvas, std::uint32_t seed)
{
    Dice dice(seed);
    auto const horizon = dice.between(0.44f, 0.6f);
    return { horizon,
        { canvas.aspect() * dice.between(0.2f, 0.8f), horizon - dice.between(0.05f, 0.28f) },
        skyOf(seed), seed };
}

void drawTower(Canvas& canvas, float u, float foot, float height)
{
    auto const width
        = [&](float v) { return height * (0.06f + 0.05f * (v - foot + height) / height); };
    canvas.fillWhere({ u - height * 0.2f, foot - height }, { u + height * 0.2f, foot },
        { .93f, .92f, .9f },
        [&](Spot here) { return (width(here.v) - std::abs(here.u - u)) / canvas.unit(); });
    for (auto stripe = 0; stripe < 3; ++stripe) {
        auto const top = foot - height * (0.92f - 0.36f * static_cast<float>(stripe));
        canvas.fillWhere({ u - height * 0.2f, top }, { u + height * 0.2f, top + height * 0.18f },
            { .76f, .16f, .14f }, [&](Spot here) {
                auto const inside = here.v > top && here.v < top + height * 0.18f;
                return inside ? (width(here.v) - std::abs(here.u - u)) / canvas.unit() : 0;
            });
    }
    canvas.fillWhere(
        { u, foot - height }, { u + height * 0.2f, foot }, { .1f, .08f, .16f }, [&](Spot here) {
            auto const side = (here.u - u) / width(here.v);
            return side < 1 ? 0.5f * side * side : 0;
        });
    canvas.box({ u - height * 0.09f, foot - height * 1.02f }, { u + height * 0.09f, foot - height },
        { .2f, .2f, .24f });
    canvas.box({ u - height * 0.05f, foot - height * 1.13f },
        { u + height * 0.05f, foot - height * 1.02f }, { 1, .9f, .6f });
    canvas.triangle({ u, foot - height * 1.24f }, { u + height * 0.07f, foot - height * 1.13f },
        { u - height * 0.07f, foot - height * 1.13f }, { .6f, .12f, .12f });
    canvas.glow({ u, foot - height * 1.07f }, height * 0.6f, { .5f, .42f, .22f });
}

} // namespace

Canvas drawSea(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    Dice dice(seed + 50);
    auto const shore = makeShore(canvas, seed);
    drawSky(canvas, shore.sky, shore.horizon);
    drawSun(canvas, shore.sun, 0.035f, mix({ 1, .96f, .86f }, shore.sky.horizon, 0.4f));
    drawClouds(canvas, shore.horizon, dice.between(0.25f, 0.6f),
        mix({ 1, 1, 1 }, shore.sky.horizon, 0.45f), seed);
    drawWater(canvas, shore);
    for (auto boat = dice.below(4); boat > 0; --boat) {
        auto const height = dice.between(0.04f, 0.16f);
        drawBoat(canvas,
            { canvas.aspect() * dice.between(0.1f, 0.9f), shore.horizon + height * 0.25f }, height,
            mix({ .98f, .96f, .92f }, { .85f, .3f, .2f }, dice.between(0, 1) > 0.6f ? 1 : 0));
    }
    drawBeach(canvas, shore);
    canvas.grain(0.025f, seed);
    return canvas;
}

Canvas drawLighthouse(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    auto const shore = makeShore(canvas, seed);
    drawSky(canvas, shore.sky, shore.horizon);
    drawSun(canvas, shore.sun, 0.03f, mix({ 1, .94f, .8f }, shore.sky.horizon, 0.5f));
    drawClouds(canvas, shore.horizon, 0.5f, mix({ 1, 1, 1 }, shore.sky.horizon, 0.5f), seed);
    drawWater(canvas, shore);
    auto const u = canvas.aspect() * (shore.sun.u > canvas.aspect() / 2 ? 0.3f : 0.7f);
    auto const cliff = [&](float at) {
        auto const aside = (at - u) / 0.42f;
        return 0.72f + 0.3f * aside * aside + 0.08f * (layeredNoise(at * 6, 2, seed, 4) - 0.5f);
    };
    drawTower(canvas, u, cliff(u) + 0.02f, 0.42f);
    canvas.fillBelow(cliff, [&](Spot here, float depth) {
        auto const texture = layeredNoise(here.u * 26, here.v * 40, seed + 4, 4);
        auto const grass = mix({ .34f, .46f, .16f }, { .5f, .56f, .24f }, texture);
        auto const rock = mix({ .3f, .24f, .2f }, { .58f, .5f, .42f }, texture);
        return mix(grass, rock, smoothStep(0.02f, 0.07f, depth + 0.03f * texture));
    });
    canvas.grain(0.025f, seed);
    return canvas;
}

} // namespace pixelhain
