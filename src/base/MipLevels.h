#pragma once
#include "base/Bitmap.h"
#include "base/Geometry.h"
#include <vector>

namespace pixelhain {

/// A picture and its halves, so that it can be drawn at any size without reading more pixels than
/// the result needs. The pixels of the picture itself are shared, not copied.
class MipLevels {
public:
    struct Level {
        Bitmap bitmap;
        /// The picture's size in this level's pixels: the last ones may reach beyond its edge.
        double width = 0;
        double height = 0;
    };

    /// The whole picture at `whole` pixels, of which only `part` is drawn.
    struct Drawing {
        PixelSize whole;
        PixelRect part;
        bool operator==(Drawing const&) const = default;
    };

    MipLevels() = default;

    /// Halves `picture` until a side is at most `smallest` pixels. Takes a while for large ones.
    explicit MipLevels(Bitmap const& picture, int smallest = 512);

    bool isEmpty() const { return levels_.empty(); }
    PixelSize size() const { return isEmpty() ? PixelSize {} : levels_.front().bitmap.size; }
    std::vector<Level> const& all() const { return levels_; }

    /// The smallest level that has at least `least` times as many pixels a side as `whole`, or the
    /// picture itself. Not for an empty one.
    Level const& levelFor(PixelSize whole, double least) const;

    /// The part, filtered well: pixel by pixel where the sizes agree, else by Lanczos-3, from a
    /// level that is fine enough to lose nothing. Takes two processors for large ones. Empty if
    /// there is no memory for it, or nothing to draw.
    [[nodiscard]] Bitmap sharp(Drawing const& drawing) const;

private:
    std::vector<Level> levels_;
};

/// Half the size, rounded up, each pixel the mean of those it covers. Empty without memory.
[[nodiscard]] Bitmap halved(Bitmap const& bitmap);

} // namespace pixelhain
