#pragma once
#include <cstddef>
#include <cstdint>

namespace pixelhain {

/// The inner loops of the resampler. Weights have 14 fraction bits, the values between both passes
/// 6, so that nothing is rounded to whole levels before the end. All sets give equal results.
struct ResampleKernels {
    /// out[i] = sum of rows[t][i] × weights[t], for `count` bytes; `taps` is even, `count` a
    /// multiple of 32.
    void (*down)(std::uint8_t const* const* rows, std::int16_t const* weights, int taps,
        std::int16_t* out, std::size_t count);

    /// A row of `count` pixels of four channels: each the sum of in[4·(first + t) + channel] ×
    /// its own weights[t], rounded and kept in 0 to 255; `taps` is a multiple of 4.
    void (*across)(std::int16_t const* in, std::int32_t const* firsts, std::int16_t const* weights,
        int taps, std::uint8_t* out, int count);

    /// Adds to the four sums of each of `count` boxes the `width` pixels that lie in it, one box
    /// beside the other; `width` is at most 256.
    void (*gather)(std::uint8_t const* in, int width, std::uint32_t* sums, int count);
};

/// The fastest set that this processor has.
[[nodiscard]] ResampleKernels const& resampleKernels();

/// The same in plain arithmetic.
[[nodiscard]] ResampleKernels const& plainResampleKernels();

} // namespace pixelhain
