#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

namespace pixelhain {

/// How bright a scene-referred picture is, from its linear R, G, B (Rec. 709 primaries).
class ExposureMeter {
public:
    void add(float red, float green, float blue);

    /// The factor for the whole picture: 1 where its mean brightness (the mean of the logarithms)
    /// lies in the range of ordinary pictures, which then look as their makers saw them; otherwise
    /// what brings the mean to middle grey (0.18).
    [[nodiscard]] float exposure() const;

private:
    double logarithms_ = 0;
    std::uint64_t pixels_ = 0;
};

/// One linear pixel to sRGB: values to 0.8 as they are, brighter ones pressed together below 1 with
/// their hue kept. Negative and undefined values count as 0.
class ToneMap {
public:
    explicit ToneMap(float exposure)
        : exposure_(exposure)
    {
    }

    /// Puts B, G, R; `out[3]` is left alone.
    void put(float red, float green, float blue, std::uint8_t* out) const;

private:
    float exposure_;
};

} // namespace pixelhain
