#include "Noise.h"
#include "Scenery.h"

namespace pixelhain {

namespace {

void drawPeaks(Canvas& canvas, Ridge const& ridge, Color rock, Color haze, std::uint32_t seed)
{
    auto const height = [&](float u) {
        auto const sharp = 1 - std::abs(2 * layeredNoise(u * ridge.width, 3, seed, 2) - 1);
        auto const folds = layeredNoise(u * ridge.width * 6, 5, seed + 8, 4) - 0.5f;
        return ridge.crest + ridge.rise * (1 - 2.1f * sharp * sharp - 0.5f * folds);
    };
    canvas.fillBelow(height, [&](Spot here, float depth) {
        auto const folds = layeredNoise(here.u * 9 + here.v * 4, here.v * 11, seed + 5, 5);
        auto const lit
            = folds - layeredNoise((here.u + 0.012f) * 9 + here.v * 4, here.v * 11, seed + 5, 5);
        auto const snowLine = 0.10f + 0.16f * (folds - 0.5f);
        auto const ground
            = mix({ .95f, .97f, 1 }, rock, smoothStep(snowLine - 0.03f, snowLine + 0.04f, depth));
        return mix(ground * std::clamp(0.86f + lit * 5, 0.45f, 1.15f), haze,
            smoothStep(0.1f, 0.5f, depth) * 0.8f);
    });
}

void drawBalloon(Canvas& canvas, Spot center, float radius, Color first, Color second)
{
    canvas.triangle({ center.u - radius * 0.7f, center.v + radius * 0.72f },
        { center.u + radius * 0.7f, center.v + radius * 0.72f },
        { center.u, center.v + radius * 1.5f }, mix(first, second, 0.5f) * 0.7f);
    canvas.disc(center, radius, first);
    for (auto stripe = -2; stripe <= 2; ++stripe) {
        auto const turn = static_cast<float>(stripe) * 0.36f;
        canvas.fillWhere({ center.u - radius, center.v - radius },
            { center.u + radius, center.v + radius }, second, [&](Spot here) {
                auto const v = (here.v - center.v) / radius;
                auto const around = std::sqrt(std::max(0.0f, 1 - v * v));
                auto const middle = center.u + radius * around * turn * 1.25f;
                auto const half = radius * around * 0.1f;
                return around > 0 ? (half - std::abs(here.u - middle)) / canvas.unit() : 0;
            });
    }
    canvas.disc({ center.u - radius * 0.35f, center.v - radius * 0.35f }, radius * 0.6f,
        { 1, 1, 1 }, 0.25f, 1);
    canvas.disc({ center.u + radius * 0.5f, center.v + radius * 0.3f }, radius * 0.7f,
        { 0, 0, .1f }, 0.12f, 1);
    canvas.box({ center.u - radius * 0.16f, center.v + radius * 1.5f },
        { center.u + radius * 0.16f, center.v + radius * 1.74f }, { .36f, .22f, .12f });
}

} // namespace

Canvas drawMountains(PixelSize size, std::uint32_t seed, bool isByTheLake)
{
    Canvas canvas(size);
    Dice dice(seed);
    auto const sky = skyOf(seed);
    auto const shore = isByTheLake ? 0.62f : 1.0f;
    drawSky(canvas, sky, shore * 0.7f);
    drawClouds(canvas, shore * 0.6f, dice.between(0.15f, 0.45f),
        mix({ 1, 1, 1 }, sky.horizon, 0.4f), seed);
    auto const rock = mix({ .36f, .35f, .38f }, sky.middle, 0.25f);
    drawPeaks(canvas, { shore * 0.5f, shore * 0.14f, 1.3f, 6 }, mix(rock, sky.middle, 0.5f),
        sky.horizon, seed + 1);
    drawPeaks(canvas, { shore * 0.62f, shore * 0.2f, 1.0f, 6 }, rock, sky.horizon, seed + 2);
    for (auto layer = 0; layer < 3; ++layer) {
        auto const near = static_cast<float>(layer) / 2;
        auto const green
            = mix(mix({ .26f, .42f, .22f }, sky.horizon, 0.4f), { .12f, .26f, .11f }, near);
        drawRidge(canvas, { shore * (0.76f + 0.08f * near), shore * 0.07f, 1.6f + near, 5 }, green,
            green * 0.7f, seed + 10 + static_cast<std::uint32_t>(layer));
    }
    if (isByTheLake) {
        drawConifers(canvas, shore - 0.03f, 0.07f, { .08f, .2f, .12f }, seed + 20);
        canvas.reflect(shore, mix(sky.middle, { .06f, .2f, .3f }, 0.6f), seed);
    } else {
        drawConifers(canvas, 0.95f, 0.3f, { .05f, .13f, .08f }, seed + 20);
    }
    canvas.grain(0.025f, seed);
    return canvas;
}

Canvas drawDunes(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    Dice dice(seed);
    auto const sky = skyOf(seed);
    drawSky(canvas, sky, 0.55f);
    drawSun(canvas, { canvas.aspect() * dice.between(0.2f, 0.8f), dice.between(0.12f, 0.32f) },
        0.04f, { 1, .9f, .7f });
    for (auto layer = 0; layer < 5; ++layer) {
        auto const near = static_cast<float>(layer) / 4;
        Ridge const ridge { 0.48f + 0.4f * near * near, 0.04f + 0.07f * near, 2.2f - near, 2 };
        auto const own = seed + static_cast<std::uint32_t>(layer);
        auto const line = [&](float u) {
            return ridge.crest
                + ridge.rise * (1 - 2 * smoothStep(0.2f, 0.8f, noise(u * ridge.width + 9, 3, own)));
        };
        auto const sunny = mix(
            mix({ .94f, .62f, .34f }, sky.horizon, 0.5f * (1 - near)), { .88f, .5f, .24f }, near);
        canvas.fillBelow(line, [&](Spot here, float depth) {
            auto const slope
                = (line(here.u + 0.01f + depth * 0.25f) - line(here.u - 0.01f + depth * 0.25f))
                * 12;
            auto const ripples
                = std::sin((here.v * 160 + 9 * noise(here.u * 5, here.v * 8, own)) / (1.3f - near));
            auto const light = smoothStep(-0.35f, 0.35f, slope - depth * 0.6f);
            return mix(sunny * 0.52f, sunny, light) * (1 + 0.035f * near * ripples);
        });
    }
    canvas.grain(0.03f, seed);
    return canvas;
}

Canvas drawForest(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    Dice dice(seed);
    auto const isAutumn = seed % 2 == 1;
    auto const light = isAutumn ? Color { .99f, .84f, .5f } : Color { .88f, .95f, .68f };
    auto const dark = isAutumn ? Color { .24f, .12f, .05f } : Color { .05f, .13f, .06f };
    auto const sun = Spot { canvas.aspect() * dice.between(0.3f, 0.7f), 0.3f };
    canvas.fill([&](Spot here) {
        auto const leaves = layeredNoise(here.u * 12, here.v * 12, seed, 5);
        auto const away = std::hypot(here.u - sun.u, here.v - sun.v);
        return mix(light, mix(light, dark, 0.75f), away * 0.9f + (leaves - 0.5f) * 0.9f);
    });
    for (auto layer = 0; layer < 4; ++layer) {
        auto const near = static_cast<float>(layer) / 3;
        auto const bark = mix(mix(light, dark, 0.5f), dark, near);
        for (auto trunk = 0; trunk < 12 - 2 * layer; ++trunk) {
            auto const u = dice.between(0, canvas.aspect());
            auto const half = dice.between(0.4f, 1) * (0.008f + 0.032f * near);
            auto const lean = dice.between(-0.05f, 0.05f);
            canvas.fillWhere({ u - 0.1f, 0 }, { u + 0.1f, 1 }, bark, [&](Spot here) {
                auto const width = half
                    * (0.8f + 0.4f * here.v * here.v + 0.12f * noise(here.v * 30, u * 50, seed));
                return (width - std::abs(here.u - u - lean * here.v)) / canvas.unit();
            });
        }
        drawRidge(canvas, { 0.74f + 0.09f * near, 0.03f, 3, 4 },
            mix(mix(light, dark, 0.45f), dark, near * 0.6f), dark,
            seed + 30 + static_cast<std::uint32_t>(layer));
    }
    canvas.glow(sun, 0.9f, light * 0.55f);
    canvas.grain(0.03f, seed);
    return canvas;
}

Canvas drawBalloons(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    Dice dice(seed);
    auto const sky = skyOf(seed);
    drawSky(canvas, sky, 0.8f);
    drawClouds(canvas, 0.75f, 0.35f, mix({ 1, 1, 1 }, sky.horizon, 0.35f), seed);
    for (auto layer = 0; layer < 4; ++layer) {
        auto const near = static_cast<float>(layer) / 3;
        auto const green
            = mix(mix({ .5f, .62f, .5f }, sky.horizon, 0.5f), { .3f, .46f, .14f }, near);
        drawRidge(canvas, { 0.72f + 0.18f * near, 0.06f, 1.4f, 3 }, green, green * 0.75f,
            seed + static_cast<std::uint32_t>(layer));
    }
    static constexpr Color paints[] = { { .85f, .2f, .16f }, { .96f, .76f, .16f },
        { .16f, .44f, .72f }, { .94f, .94f, .9f }, { .2f, .6f, .42f }, { .92f, .48f, .14f } };
    auto const count = 5 + dice.below(3);
    for (auto balloon = 0; balloon < count; ++balloon) {
        auto const radius
            = 0.025f + 0.11f * static_cast<float>(balloon) / static_cast<float>(count);
        auto const paint = dice.below(6);
        drawBalloon(canvas,
            { canvas.aspect() * dice.between(0.08f, 0.92f), dice.between(0.14f, 0.6f) }, radius,
            paints[paint], paints[(paint + 1 + dice.below(4)) % 6]);
    }
    canvas.grain(0.02f, seed);
    return canvas;
}

} // namespace pixelhain
