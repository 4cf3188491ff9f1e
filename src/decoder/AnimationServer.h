#pragma once
#include "decoder/AnimationProtocol.h"
#include "ports/AnimationSource.h"
#include "ports/ByteSource.h"
#include "posix/Descriptor.h"
#include <functional>
#include <memory>

namespace pixelhain {

/// The worker's end of an animation: it opens one at a time and decodes its frames as they are
/// asked for.
class AnimationServer {
public:
    /// Opens the animation in these bytes, in frames of at most so many pixels on their longest
    /// side; null if they are none. May throw.
    using Opener = std::function<std::unique_ptr<AnimationSource>(
        std::unique_ptr<ByteSource>, int maxPixel)>;

    explicit AnimationServer(Opener opener)
        : opener_(std::move(opener))
    {
    }

    /// `descriptor`: the file, or the space for the frame.
    [[nodiscard]] AnimationResponse answer(AnimationRequest const& request, Descriptor descriptor);

private:
    [[nodiscard]] AnimationResponse open(AnimationRequest const& request, Descriptor file);
    [[nodiscard]] AnimationResponse frame(AnimationRequest const& request, Descriptor space);

    Opener opener_;
    std::unique_ptr<AnimationSource> animation_;
    std::uint32_t next_ = 0; ///< frame that the animation stands in front of
};

} // namespace pixelhain
