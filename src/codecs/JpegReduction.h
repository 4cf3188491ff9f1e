#pragma once
#include "codecs/JpegMarkers.h"
#include "codecs/JpegPlanes.h"
#include "codecs/RecentBytes.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// A JPEG at an eighth of its size by the means of its blocks.
class JpegReduction {
public:
    /// Large enough for four walks side by side, small enough to stay in a cache.
    static constexpr std::size_t usualPiece = std::size_t { 512 } << 10;

    /// `bytes` must outlive it; of a sequential scan it reads `piece` of them at once.
    explicit JpegReduction(ByteSource const& bytes, std::size_t piece = usualPiece);

    /// The size of the picture; nothing if this is not for us. To be called first.
    [[nodiscard]] std::optional<PixelSize> readFrame();

    /// Fills the planes, from the first scan to the last that is needed. False if the JPEG is of
    /// one of the less usual kinds, or damaged in another way than that its end is missing.
    [[nodiscard]] bool readMeans();

    [[nodiscard]] std::vector<JpegPlane> const& planes() const { return planes_; }
    /// After `readMeans`.
    [[nodiscard]] JpegColors colors() const { return *colors_; }
    [[nodiscard]] bool hasAdobeMarker() const { return markers_.hasAdobeMarker(); }

private:
    enum class Next : std::uint8_t { more, finished, foreign };

    [[nodiscard]] bool latchTables();
    [[nodiscard]] Next takeSequential();
    [[nodiscard]] Next takeProgressive();
    [[nodiscard]] Next takeMeans();
    [[nodiscard]] bool isEnough() const;
    [[nodiscard]] bool isBeyondLimits() const;
    void fillSamples();

    RecentBytes bytes_;
    std::size_t piece_;
    JpegMarkers markers_;
    std::vector<JpegPlane> planes_;
    std::optional<JpegColors> colors_;
    std::uint64_t offset_ = 0; ///< where the next segment is looked for
    int scans_ = 0;
};

/// Whether a progressive JPEG's means are exact to about a grey level without their last
/// `missingBits`; `step` is what they count in, in eighths of a level.
[[nodiscard]] bool areMeansExact(int missingBits, int step);

} // namespace pixelhain
