#pragma once
#include "codecs/JpegPlanes.h"
#include <array>
#include <cstdint>
#include <vector>

namespace pixelhain {

/// Makes rows of pixels of a reduced JPEG's planes.
class JpegPixels {
public:
    /// `planes` must outlive it.
    JpegPixels(std::vector<JpegPlane> const& planes, JpegColors colors, int width);

    /// Row `y` as B, G, R and opaque; of ink as C, M, Y, K as they are stored.
    void writeRow(int y, std::uint8_t* row);

private:
    [[nodiscard]] std::int8_t const* stretched(std::size_t plane, int y);

    std::vector<JpegPlane> const& planes_;
    JpegColors colors_;
    std::size_t width_;
    std::array<std::vector<std::int8_t>, 4> rows_;
};

/// The conversion of YCbCr, of samples less 128: B, G, R and opaque. All sets give equal results,
/// the library's.
struct JpegColorKernels {
    using Convert
        = void (*)(std::int8_t const* const* samples, std::uint8_t* row, std::size_t count);
    Convert toColor;
    Convert toInk; ///< the same turned over, each fourth byte kept
};
[[nodiscard]] JpegColorKernels const& jpegColorKernels(); ///< the fastest for this processor
[[nodiscard]] JpegColorKernels const& plainJpegColorKernels();

} // namespace pixelhain
