#pragma once
#include "codecs/ByteView.h"
#include "codecs/ExifReader.h"
#include "ports/ImageSource.h"
#include <array>
#include <cstdint>
#include <optional>

namespace pixelhain {

/// What stands in front of a BMP's pixels.
struct BmpHeader {
    enum class Packing : std::uint8_t { plain, runs8, runs4 };
    PixelSize size;
    bool isTopDown = false;
    int bits = 0; ///< a pixel: 1, 2, 4, 8, 16, 24 or 32
    Packing packing = Packing::plain;
    std::array<std::uint32_t, 4> masks {}; ///< red, green, blue, alpha for 16 and 32 bits
    std::array<std::array<std::uint8_t, 4>, 256> colors {}; ///< B, G, R, 255
    std::uint64_t pixelOffset = 0;
    ByteRange profile;

    [[nodiscard]] std::size_t bytesPerRow() const
    {
        return (static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bits) + 31) / 32
            * 4;
    }
};

[[nodiscard]] std::optional<BmpHeader> readBmpHeader(ByteSource const& bytes);

/// The picture to at most `maxPixel` (0: its own size), in sRGB. Rows that a cut file lacks are
/// transparent.
[[nodiscard]] std::optional<DecodedImage> decodeBmp(
    ByteSource const& bytes, BmpHeader const& header, int maxPixel, ByteSpan profile);

} // namespace pixelhain
