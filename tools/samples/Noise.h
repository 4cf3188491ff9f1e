#pragma once
#include <cstdint>

namespace pixelhain {

/// Smooth pseudo-random fields: the same arguments give the same value on every machine.
/// All values lie in 0…1.

/// A fresh value for every integer point; nothing is smooth here.
float hashed(int x, int y, std::uint32_t seed);

/// Value noise of one unit per cell.
float noise(float x, float y, std::uint32_t seed);

/// `octaves` layers of noise, each half as strong and twice as fine as the one before.
float layeredNoise(float x, float y, std::uint32_t seed, int octaves);

/// A sequence of values for placing things.
class Dice {
public:
    explicit Dice(std::uint32_t seed);

    /// Evenly spread in `low`…`high`.
    float between(float low, float high);
    /// Evenly spread in 0…`count` - 1.
    int below(int count);

private:
    std::uint32_t seed_;
    int drawn_ = 0;
};

} // namespace pixelhain
