#pragma once
#include "base/Geometry.h"
#include "ports/ByteSource.h"
#include <cstdint>
#include <optional>

namespace pixelhain {

/// What stands in front of the samples of a portable anymap.
struct PnmHeader {
    enum class Samples : std::uint8_t { text, bits, bytes, words };
    PixelSize size;
    Samples samples = Samples::bytes;
    int channels = 1; ///< 1 grey, 2 grey and alpha, 3 colour, 4 colour and alpha
    int most = 255; ///< the sample that stands for full; 65535 at most
    bool isInkOnOne = false; ///< bitmaps: 1 is black
    std::uint64_t offset = 0; ///< of the first sample

    [[nodiscard]] bool hasAlpha() const { return channels == 2 || channels == 4; }
    [[nodiscard]] bool isGrey() const { return channels <= 2; }
};

[[nodiscard]] std::optional<PnmHeader> readPnmHeader(ByteSource const& bytes);

} // namespace pixelhain
