#pragma once
#include "base/Bitmap.h"
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace pixelhain {

/// Where a frame lies on its canvas, in pixels. It may reach beyond all edges.
struct FramePlace {
    int x = 0;
    int y = 0;
    PixelSize size;
};

/// What becomes of a frame's place before the next frame is drawn.
enum class Disposal : std::uint8_t {
    keep,
    clear, ///< to transparent, whatever background the file names: as browsers do
    restore, ///< to what was there before the frame
};

enum class Blend : std::uint8_t { over, replace };

/// The picture that the frames of an animation are drawn on one after the other: B, G, R, A,
/// premultiplied, transparent at first.
class AnimationCanvas {
public:
    /// False if there is no memory for it, or it is beyond the limits.
    [[nodiscard]] bool create(PixelSize size);
    [[nodiscard]] PixelSize size() const { return size_; }

    /// Disposes of the frame before and takes note of how to dispose of this one.
    void beginFrame(FramePlace const& place, Disposal disposal);

    /// The row at `y` of the canvas.
    [[nodiscard]] std::uint8_t* row(int y);

    /// Draws row `y` of the current frame, as much of it as lies on the canvas.
    void drawRow(int y, std::uint8_t const* pixels, Blend blend);

    /// Where a row of the current frame begins and ends on the canvas, in pixels of the frame; null
    /// if no part of it lies there.
    struct Span {
        std::uint8_t* to = nullptr; ///< the first pixel that is seen
        int first = 0;
        int count = 0;
    };
    [[nodiscard]] Span visible(int y);

    /// Transparent, with no frame to dispose of.
    void reset();

    /// What is to be seen, at most `maxPixel` on its longest side (0: as it is); empty if there is
    /// no memory for it.
    [[nodiscard]] Bitmap picture(int maxPixel) const;

private:
    struct Free {
        void operator()(std::uint8_t* memory) const { std::free(memory); }
    };

    [[nodiscard]] FramePlace clipped(FramePlace const& place) const;
    [[nodiscard]] Bitmap view() const;
    void dispose();
    void save();

    PixelSize size_;
    std::size_t rowBytes_ = 0;
    std::unique_ptr<std::uint8_t, Free> pixels_;
    FramePlace frame_;
    FramePlace onCanvas_; ///< the part of the frame's place that lies there
    Disposal disposal_ = Disposal::keep;
    std::vector<std::uint8_t> saved_;
};

} // namespace pixelhain
