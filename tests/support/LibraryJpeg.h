#pragma once
#include "base/Geometry.h"
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace pixelhain {

/// A JPEG at an eighth of its size as the JPEG library sees it.
struct LibraryEighth {
    PixelSize size;
    std::vector<std::uint8_t> pixels; ///< B, G, R and opaque; C, M, Y, K of ink
    bool isSound = true; ///< nothing was complained about
    bool isProgressive = false;

    std::uint8_t const* at(int x, int y) const
    {
        return pixels.data() + (std::size_t(y) * std::size_t(size.width) + std::size_t(x)) * 4;
    }
};
std::optional<LibraryEighth> libraryEighth(std::span<std::uint8_t const> jpeg);

/// Whether no block of it can leave the range of grey levels by more than the library is built for:
/// beyond that its instruction sets differ from each other.
bool staysWithinLevels(std::span<std::uint8_t const> jpeg);

/// The same picture, its blocks as flat as their means.
std::vector<std::uint8_t> withMeansOnly(std::span<std::uint8_t const> jpeg);

} // namespace pixelhain
