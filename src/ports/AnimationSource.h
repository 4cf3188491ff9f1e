#pragma once
#include "base/Bitmap.h"
#include "base/Geometry.h"
#include <chrono>
#include <cstdint>
#include <variant>

namespace pixelhain {

/// One picture of an animation, everything drawn that is to be seen.
struct AnimationFrame {
    Bitmap bitmap;
    std::chrono::microseconds delay {}; ///< how long it is shown; more than 0
};

/// Why there is no further frame.
enum class AnimationEnd : std::uint8_t {
    ofLoop, ///< the last one that can be read has been handed out; `restart` leads to the first
    ofPlay, ///< whatever decodes it has gone; nothing more will come
    notYet, ///< as many are played as there can be; asked again later there may be one
};

using AnimationStep = std::variant<AnimationFrame, AnimationEnd>;

/// One opened animation. Frames are decoded forward, each when it is asked for, and none is kept.
/// Everything but `stop` is for one thread at a time; `nextFrame` waits for disk and decoder.
class AnimationSource {
public:
    virtual ~AnimationSource() = default;

    /// The size of every frame as it is handed out; empty while there was no place to play it.
    [[nodiscard]] virtual PixelSize frameSize() const = 0;

    /// How often the frames are to be shown in all; 0: for ever. Known with the first frame.
    [[nodiscard]] virtual int loopCount() const = 0;

    /// The frame after the one handed out last. A damaged one ends the loop in front of it.
    [[nodiscard]] virtual AnimationStep nextFrame() = 0;

    /// The next frame will be the first again.
    virtual void restart() = 0;

    /// Nobody wants it any more: a frame that is being decoded is given up. Any thread.
    virtual void stop() = 0;
};

} // namespace pixelhain
