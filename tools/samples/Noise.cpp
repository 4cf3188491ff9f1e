#include "Noise.h"

namespace pixelhain {

namespace {

float smooth(float t)
{
    return t * t * (3 - 2 * t);
}

// std::floor is a call into the library on the oldest processors that we build for.
int wholePart(float x)
{
    auto const towardsZero = static_cast<int>(x);
    return towardsZero - (x < static_cast<float>(towardsZero) ? 1 : 0);
}

float lerp(float a, float b, float t)
{
    return a + (b - a) * t;
}

} // namespace

float hashed(int x, int y, std::uint32_t seed)
{
    auto h = static_cast<std::uint32_t>(x) * 0x9E3779B1u
        ^ static_cast<std::uint32_t>(y) * 0x85EBCA77u ^ seed * 0xC2B2AE3Du;
    h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
    h = (h ^ (h >> 12)) * 0x297A2D39u;
    h ^= h >> 15;
    return static_cast<float>(h >> 8) * (1.0f / 16777216.0f);
}

float noise(float x, float y, std::uint32_t seed)
{
    auto const column = wholePart(x);
    auto const row = wholePart(y);
    auto const across = smooth(x - static_cast<float>(column));
    auto const upper = lerp(hashed(column, row, seed), hashed(column + 1, row, seed), across);
    auto const lower
        = lerp(hashed(column, row + 1, seed), hashed(column + 1, row + 1, seed), across);
    return lerp(upper, lower, smooth(y - static_cast<float>(row)));
}

float layeredNoise(float x, float y, std::uint32_t seed, int octaves)
{
    auto sum = 0.0f;
    auto whole = 0.0f;
    auto strength = 1.0f;
    for (auto octave = 0; octave < octaves; ++octave) {
        sum += strength * noise(x, y, seed + static_cast<std::uint32_t>(octave) * 101u);
        whole += strength;
        strength /= 2;
        x *= 2;
        y *= 2;
    }
    return sum / whole;
}

Dice::Dice(std::uint32_t seed)
    : seed_(seed)
{
}

float Dice::between(float low, float high)
{
    return low + (high - low) * hashed(drawn_++, 7, seed_);
}

int Dice::below(int count)
{
    return static_cast<int>(between(0, static_cast<float>(count)));
}

} // namespace pixelhain
