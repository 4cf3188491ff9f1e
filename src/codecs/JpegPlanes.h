#pragma once
#include "codecs/JpegMarkers.h"
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace pixelhain {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// Numbers that begin as zeros, without a touch where nobody writes.
template <typename Number> using ZeroedNumbers = std::unique_ptr<Number[], FreeMemory>;

/// A component of a JPEG at an eighth of the picture's size.
struct JpegPlane {
    int blocksAcross = 0; ///< that show something of the picture
    int blocksDown = 0;
    int paddedAcross = 0; ///< in whole units
    int paddedDown = 0;
    int side = 1; ///< samples of a block across and down: 2 where that saves stretching them
    int repeatsAcross = 1; ///< pixels of the reduced picture that a sample fills
    int repeatsDown = 1;
    std::optional<JpegMarkers::Quantization> quantization; ///< of the component's first scan
    int missingBits = -1; ///< of the means; -1: no scan came yet
    ZeroedNumbers<std::int8_t> samples; ///< less 128, `side` × `paddedAcross` in a row
    ZeroedNumbers<std::int16_t> means; ///< of a progressive JPEG, in steps

    [[nodiscard]] int samplesAcross() const { return paddedAcross * side; }
    [[nodiscard]] std::int8_t* sampleRow(int y) const
    {
        return samples.get() + std::ptrdiff_t { y } * samplesAcross();
    }
    [[nodiscard]] std::int16_t* meanRow(int y) const
    {
        return means.get() + std::ptrdiff_t { y } * paddedAcross;
    }
};

/// The planes of a picture of this frame, all grey; nothing if a sampling of its components needs
/// more than whole pixels, or more than 2 × 2 samples of a block, or there is no memory.
[[nodiscard]] std::optional<std::vector<JpegPlane>> makePlanes(JpegFrame const& frame);

/// An eighth of the size, nothing cut off.
[[nodiscard]] constexpr PixelSize eighthOf(PixelSize size)
{
    return { (size.width + 7) / 8, (size.height + 7) / 8 };
}

} // namespace pixelhain
