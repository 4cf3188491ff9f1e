#pragma once
#include "codecs/AnimationCanvas.h"
#include "ports/ByteSource.h"
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace pixelhain {

/// The frames of one format, drawn one after the other.
class AnimationReader {
public:
    virtual ~AnimationReader() = default;

    [[nodiscard]] virtual PixelSize canvasSize() const = 0;
    /// How often the frames are to be shown in all; 0: for ever.
    [[nodiscard]] virtual int loopCount() const = 0;
    /// The profile of what is drawn; empty: sRGB.
    [[nodiscard]] virtual std::vector<std::uint8_t> profile() const { return {}; }

    /// Draws the next frame and says for how long it is stated to be shown. Nothing behind the last
    /// frame and in front of a damaged one; the canvas is of no use then.
    [[nodiscard]] virtual std::optional<std::chrono::microseconds> draw(AnimationCanvas& canvas)
        = 0;
    virtual void restart() = 0;
};

/// Readers over `bytes`, which outlive them; null if the header is beyond use or says that there is
/// nothing but a still picture.
[[nodiscard]] std::unique_ptr<AnimationReader> readGifAnimation(ByteSource const& bytes);
[[nodiscard]] std::unique_ptr<AnimationReader> readPngAnimation(ByteSource const& bytes);
[[nodiscard]] std::unique_ptr<AnimationReader> readWebpAnimation(ByteSource const& bytes);

} // namespace pixelhain
