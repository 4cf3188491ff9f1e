#pragma once
#include "Canvas.h"
#include <cstdint>

namespace pixelhain {

/// What can be drawn. The seed decides hour, colors and where things stand.
enum class Scene {
    sea,
    lighthouse,
    mountains,
    lake,
    city,
    fireworks,
    flowers,
    poppies,
    forest,
    northernLights,
    dunes,
    balloons,
    marble,
    rings,
    emblem,
};

Canvas drawScene(Scene scene, PixelSize size, std::uint32_t seed);

/// Colors in swirls; `phase` from 0 to 1 runs through all of them, back to the first.
Canvas drawMarble(PixelSize size, std::uint32_t seed, float phase);

/// How opaque the emblem is at a place of its canvas.
float emblemOpacity(Spot spot, float aspect);

} // namespace pixelhain
