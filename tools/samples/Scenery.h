#pragma once
#include "Canvas.h"
#include <cstdint>

namespace pixelhain {

/// The colors of a sky from the zenith down to the horizon.
struct SkyColors {
    Color top;
    Color middle;
    Color horizon;
};

/// A sky for the hour that the seed picks: noon, afternoon, dusk, dawn, a clear evening.
SkyColors skyOf(std::uint32_t seed);

/// Fills the canvas with a sky whose horizon lies at `horizon`.
void drawSky(Canvas& canvas, SkyColors const& colors, float horizon);
/// `cover` is the share of the sky in clouds.
void drawClouds(Canvas& canvas, float horizon, float cover, Color light, std::uint32_t seed);
void drawStars(Canvas& canvas, float lowest, int count, std::uint32_t seed);
void drawSun(Canvas& canvas, Spot center, float radius, Color color);
/// A band of hills whose crest lies around `crest`; `roughness` octaves, `width` humps a unit.
struct Ridge {
    float crest = 0.5f;
    float rise = 0.1f;
    float width = 2;
    int roughness = 4;
};
float ridgeHeight(Ridge const& ridge, float u, std::uint32_t seed);
void drawRidge(Canvas& canvas, Ridge const& ridge, Color crest, Color foot, std::uint32_t seed);
/// A line of conifers standing on `ground`.
void drawConifers(Canvas& canvas, float ground, float tallest, Color color, std::uint32_t seed);

// The scenes, each in the source named after it.
Canvas drawSea(PixelSize size, std::uint32_t seed);
Canvas drawLighthouse(PixelSize size, std::uint32_t seed);
Canvas drawMountains(PixelSize size, std::uint32_t seed, bool isByTheLake);
Canvas drawDunes(PixelSize size, std::uint32_t seed);
Canvas drawForest(PixelSize size, std::uint32_t seed);
Canvas drawBalloons(PixelSize size, std::uint32_t seed);
Canvas drawNorthernLights(PixelSize size, std::uint32_t seed);
Canvas drawCity(PixelSize size, std::uint32_t seed, bool hasFireworks);
Canvas drawFlowers(PixelSize size, std::uint32_t seed);
Canvas drawPoppies(PixelSize size, std::uint32_t seed);
Canvas drawRings(PixelSize size, std::uint32_t seed);
Canvas drawEmblem(PixelSize size, std::uint32_t seed);

} // namespace pixelhain
