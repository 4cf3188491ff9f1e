#include "Noise.h"
#include "Scenery.h"
#include <numbers>

namespace pixelhain {

namespace {

struct Bloom {
    Spot center;
    float radius;
    int petals;
    Color petal;
    Color heart;
    float turn;
};

void drawBokeh(Canvas& canvas, Color dark, Color light, std::uint32_t seed)
{
    Dice dice(seed);
    canvas.fill(
        [&](Spot here) { return mix(dark, light, layeredNoise(here.u * 2, here.v * 2, seed, 3)); });
    for (auto spot = 0; spot < 40; ++spot) {
        auto const tint = mix(light, { 1, .96f, .8f }, dice.between(0, 0.7f));
        canvas.disc({ dice.between(0, canvas.aspect()), dice.between(0, 1) },
            dice.between(0.02f, 0.11f), tint, dice.between(0.05f, 0.2f), 0.18f);
    }
}

void drawStem(Canvas& canvas, Bloom const& bloom, Color color)
{
    auto const sway = 0.08f * (bloom.turn - 0.5f);
    canvas.fillWhere({ bloom.center.u - 0.15f, bloom.center.v }, { bloom.center.u + 0.15f, 1 },
        color, [&](Spot here) {
            auto const down = here.v - bloom.center.v;
            auto const middle = bloom.center.u + sway * down * down * 4;
            return down < 0 ? 0
                            : (bloom.radius * 0.045f - std::abs(here.u - middle)) / canvas.unit();
        });
}

void drawPetals(Canvas& canvas, Bloom const& bloom, float scale, float turn, float brightness)
{
    auto const x = [&](float u) { return static_cast<int>(u / canvas.unit()); };
    auto const reach = bloom.radius * scale * 1.02f;
    auto const count = static_cast<float>(bloom.petals);
    for (auto row = std::max(0, x(bloom.center.v - reach));
         row < std::min(canvas.size().height, x(bloom.center.v + reach) + 1); ++row)
        for (auto column = std::max(0, x(bloom.center.u - reach));
             column < std::min(canvas.size().width, x(bloom.center.u + reach) + 1); ++column) {
            auto const here = canvas.spot(column, row);
            auto const away = std::hypot(here.u - bloom.center.u, here.v - bloom.center.v)
                / bloom.radius / scale;
            auto const angle = std::atan2(here.v - bloom.center.v, here.u - bloom.center.u) + turn;
            auto const lobe = std::abs(std::cos(angle * count / 2));
            auto const rim = 0.38f + 0.62f * std::pow(lobe, 0.45f);
            auto const veins = 0.92f + 0.08f * std::sin(angle * count * 9 + away * 4);
            auto const shade
                = (0.62f + 0.38f * std::sqrt(lobe)) * (0.74f + 0.3f * away) * veins * brightness;
            canvas.blend(column, row, bloom.petal * shade,
                (rim - away) * bloom.radius * scale / canvas.unit());
        }
}

void drawBloom(Canvas& canvas, Bloom const& bloom)
{
    auto const half = std::numbers::pi_v<float> / static_cast<float>(bloom.petals);
    canvas.disc({ bloom.center.u + 0.01f, bloom.center.v + 0.02f }, bloom.radius * 1.05f,
        { 0, .05f, 0 }, 0.3f, 0.5f);
    drawPetals(canvas, bloom, 1, bloom.turn * 6 + half, 0.84f);
    drawPetals(canvas, bloom, 0.92f, bloom.turn * 6, 1.04f);
    auto const heart = bloom.radius * 0.27f;
    canvas.disc(bloom.center, heart * 1.15f, { .1f, .04f, 0 }, 0.4f, 0.4f);
    canvas.disc(bloom.center, heart, bloom.heart * 0.75f);
    // Florets sit on a spiral of the golden angle.
    for (auto floret = 0; floret < 220; ++floret) {
        auto const index = static_cast<float>(floret);
        auto const out = heart * std::sqrt(index / 220);
        canvas.disc({ bloom.center.u + out * std::cos(index * 2.39996f),
                        bloom.center.v + out * std::sin(index * 2.39996f) },
            heart * 0.05f, mix(bloom.heart, { 1, .95f, .6f }, 0.5f * index / 220), 0.9f, 0.5f);
    }
}

} // namespace

Canvas drawFlowers(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    Dice dice(seed);
    static constexpr Color petals[] = { { .98f, .97f, .95f }, { .99f, .8f, .16f },
        { .93f, .42f, .62f }, { .6f, .46f, .9f }, { .98f, .52f, .2f } };
    drawBokeh(canvas, { .06f, .2f, .08f }, { .46f, .64f, .24f }, seed);
    auto const paint = petals[seed % 5];
    auto const count = 2 + dice.below(3);
    std::vector<Bloom> blooms;
    for (auto flower = 0; flower < count; ++flower) {
        auto const share = (static_cast<float>(flower) + 0.5f) / static_cast<float>(count);
        blooms.push_back(
            { { canvas.aspect() * std::clamp(share + dice.between(-0.07f, 0.07f), 0.1f, 0.9f),
                  dice.between(0.3f, 0.62f) },
                dice.between(0.2f, 0.34f), 9 + dice.below(9), paint, { .86f, .58f, .1f },
                dice.between(0, 1) });
        drawStem(canvas, blooms.back(), { .2f, .42f, .14f });
    }
    for (auto const& bloom : blooms)
        drawBloom(canvas, bloom);
    canvas.grain(0.025f, seed);
    return canvas;
}

Canvas drawPoppies(PixelSize size, std::uint32_t seed)
{
    Canvas canvas(size);
    Dice dice(seed);
    auto const sky = skyOf(seed);
    drawSky(canvas, sky, 0.4f);
    drawClouds(canvas, 0.4f, 0.4f, mix({ 1, 1, 1 }, sky.horizon, 0.3f), seed);
    drawRidge(canvas, { 0.38f, 0.03f, 2, 4 }, { .34f, .46f, .42f }, { .3f, .44f, .3f }, seed);
    canvas.fillBelow([](float) { return 0.42f; },
        [&](Spot here, float depth) {
            auto const blades
                = layeredNoise(here.u * 60 / (0.15f + depth), here.v * 8, seed + 2, 3);
            return mix({ .5f, .62f, .28f }, { .16f, .34f, .08f }, depth * 1.6f)
                * (0.65f + 0.7f * blades);
        });
    auto const flower = seed % 2 == 0 ? Color { .86f, .12f, .08f } : Color { .56f, .4f, .86f };
    for (auto poppy = 0; poppy < 900; ++poppy) {
        auto const near = static_cast<float>(poppy) / 900;
        auto const depth = near * near;
        Spot const place { dice.between(0, canvas.aspect()),
            0.425f + 0.56f * depth + dice.between(0, 0.02f) };
        auto const radius = (0.0025f + 0.034f * depth) * dice.between(0.7f, 1.1f);
        auto const shade = flower * dice.between(0.75f, 1.15f);
        canvas.disc({ place.u - radius * 0.5f, place.v }, radius, shade * 0.85f, 1, 0.15f);
        canvas.disc({ place.u + radius * 0.5f, place.v - radius * 0.1f }, radius, shade, 1, 0.15f);
        canvas.disc({ place.u, place.v - radius * 0.3f }, radius * 0.9f, shade * 1.1f, 0.8f, 0.4f);
        canvas.disc(
            { place.u, place.v + radius * 0.1f }, radius * 0.3f, { .08f, .04f, .06f }, 0.8f, 0.5f);
    }
    canvas.grain(0.03f, seed);
    return canvas;
}

} // namespace pixelhain
