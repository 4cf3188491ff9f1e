#pragma once
#include "decoder/Protocol.h"

namespace pixelhain {

/// The records of an animation that a decoder process plays: it is opened once, and keeps its state
/// from frame to frame. They follow the same rules as those of single pictures.

enum class AnimationOperation : std::uint16_t {
    open = 1, ///< travels with the file
    frame, ///< travels with the space that the frame goes into
};

struct AnimationRequest {
    static constexpr std::uint32_t theMagic = 0x41687850; // "PxhA"

    std::uint32_t magic = theMagic;
    AnimationOperation operation = AnimationOperation::open;
    std::uint16_t unused = 0;
    std::uint64_t id = 0; ///< one that this worker never saw before; not 0
    std::uint64_t fileBytes = 0; ///< `open` only
    std::uint64_t spaceBytes = 0; ///< `frame` only
    std::int32_t maxPixel = 0; ///< `open` only; longest side of the frames, 0: as they are
    std::uint32_t frame = 0; ///< the next, or 0: the first again
};

enum class AnimationStatus : std::uint16_t {
    done = 1,
    endOfLoop, ///< there is no such frame, or it is damaged
    failed, ///< it is no animation, or there is not enough memory for it
};

struct AnimationResponse {
    static constexpr std::uint32_t theMagic = 0x46687850; // "PxhF"
    static constexpr std::uint16_t isOpaque = 1;

    std::uint32_t magic = theMagic;
    AnimationStatus status = AnimationStatus::failed;
    std::uint16_t flags = 0;
    std::uint64_t id = 0; ///< the request's
    std::int32_t width = 0; ///< of all frames
    std::int32_t height = 0;
    std::uint64_t bytesPerRow = 0; ///< of a frame
    std::uint64_t number = 0; ///< of `open`: the loop count; of a frame: microseconds of delay
};

static_assert(sizeof(AnimationRequest) == 40 && sizeof(AnimationResponse) == 40);
static_assert(std::has_unique_object_representations_v<
                  AnimationRequest> && std::has_unique_object_representations_v<AnimationResponse>);

/// A request as the worker takes it; nothing for what the program never sends.
[[nodiscard]] std::optional<AnimationRequest> parseAnimationRequest(DecoderMessage const& message);

/// The answer to `asked`; nothing for what an honest worker never says. A frame that comes back is
/// of the size of all frames, `frameSize`, and lies within the space.
[[nodiscard]] std::optional<AnimationResponse> parseAnimationResponse(
    DecoderMessage const& message, AnimationRequest const& asked, PixelSize frameSize);

} // namespace pixelhain
