#pragma once
#include "ports/ImageDecoder.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>

namespace pixelhain {

/// The records that the program and its decoder processes exchange: one message each, of a fixed
/// size, in the machine's own byte order, because both ends are one build on one machine. A request
/// travels with the descriptor of the file and, where the answer needs more room than the worker's
/// own space, with that of a larger one.

enum class DecoderOperation : std::uint16_t {
    readMeta = 1, ///< the upright size, and whether the file is an animation
    decode, ///< a picture of at most `maxPixel`, into the space
    readProperties, ///< what the file states about its photo, packed into the space
    glance, ///< the metadata, and a small embedded picture into the space if there is one
};

/// Where the answer's bytes go.
enum class DecoderSpace : std::uint16_t {
    none, ///< the answer fits into the record
    own, ///< the space that the worker was started with
    passed, ///< the one that travels with the request
};

struct DecoderRequest {
    static constexpr std::uint32_t theMagic = 0x51687850; // "PxhQ"

    std::uint32_t magic = theMagic;
    DecoderOperation operation = DecoderOperation::readMeta;
    DecoderSpace space = DecoderSpace::none;
    std::uint64_t id = 0; ///< one that this worker never saw before; not 0
    std::uint64_t fileBytes = 0;
    std::uint64_t spaceBytes = 0; ///< what may be written of the space
    std::int32_t maxPixel = 0; ///< longest side of the answer; 0: as large as the picture
    EmbeddedPreviews previews = EmbeddedPreviews::ignore;
    SmallJpegs smallJpegs = SmallJpegs::decode;
    std::uint8_t unused[2] = {};
};

enum class DecoderStatus : std::uint16_t {
    ready = 1, ///< sent once by each worker, unasked, when it can take requests
    done,
    nothing, ///< there is no picture, or none that can be read
    needsSpace, ///< the answer would be `bytes` long, more than the space holds
    needsMemory, ///< decoding would take `bytes`, more than this worker may use
};

struct DecoderResponse {
    static constexpr std::uint32_t theMagic = 0x52687850; // "PxhR"
    static constexpr std::uint8_t isOpaque = 1;
    static constexpr std::uint8_t hasSize = 2;
    static constexpr std::uint8_t isAnimated = 4;
    static constexpr std::uint8_t isCoded = 8; ///< a JPEG and no pixels; it has no rows
    static constexpr std::uint8_t isQuick = 16; ///< of a glance

    std::uint32_t magic = theMagic;
    DecoderStatus status = DecoderStatus::nothing;
    PixelOrigin origin = PixelOrigin::embedded;
    std::uint8_t flags = 0;
    std::uint64_t id = 0; ///< the request's
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint64_t bytesPerRow = 0;
    std::uint64_t bytes = 0; ///< written into the space, or missing; of the sign: what holds it
    std::uint64_t bytesRead = 0; ///< of the file, for a picture or a glance
    std::int32_t photoWidth = 0; ///< of a glance: the upright size, beside that of its picture
    std::int32_t photoHeight = 0;
};

static_assert(sizeof(DecoderRequest) == 40 && sizeof(DecoderResponse) == 56);
static_assert(std::has_unique_object_representations_v<
                  DecoderRequest> && std::has_unique_object_representations_v<DecoderResponse>);

/// What a message held: its bytes, whether they or the descriptors beside them were cut off, and
/// how many descriptors came.
struct DecoderMessage {
    std::span<std::byte const> bytes;
    std::size_t descriptors = 0;
    bool isCut = false;
};

/// Sides beyond which a picture's size counts as not stated. No format that is read here shows
/// more, and the product of two still counts exactly.
inline constexpr std::int32_t largestStatedSide = 1'000'000;

/// A request as the worker takes it; nothing for what the program never sends.
[[nodiscard]] std::optional<DecoderRequest> parseRequest(DecoderMessage const& message);

/// What holds a worker that can take requests, as Lockdown counts it; nothing if the message is
/// anything but the sign of one.
[[nodiscard]] std::optional<std::uint32_t> parseReadySign(DecoderMessage const& message);

/// The answer to `asked`; nothing for what an honest worker never says. Whatever comes back obeys
/// the request and lies within the space, so it can be used without another look.
[[nodiscard]] std::optional<DecoderResponse> parseResponse(
    DecoderMessage const& message, DecoderRequest const& asked);

/// Whether an answer to this goes into a space.
[[nodiscard]] constexpr bool needsSpace(DecoderOperation operation)
{
    return operation != DecoderOperation::readMeta;
}

/// The room that a picture of at most `maxPixel` takes, at most; 0: none that can be handed over.
[[nodiscard]] std::uint64_t spaceForPicture(PixelSize size);

} // namespace pixelhain
