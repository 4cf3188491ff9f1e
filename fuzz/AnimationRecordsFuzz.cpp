#include "decoder/AnimationProtocol.h"
#include "fuzz/Fuzz.h"
#include <cstring>

using namespace pixelhain;

namespace {

void checkRequest(DecoderMessage const& message)
{
    auto const request = parseAnimationRequest(message);
    if (!request)
        return;
    mustHold(!message.isCut && message.descriptors == 1);
    mustHold(request->id != 0 && request->maxPixel >= 0);
    auto const isFrame = request->operation == AnimationOperation::frame;
    mustHold(isFrame == (request->spaceBytes > 0));
}

void checkResponse(
    DecoderMessage const& message, AnimationRequest const& asked, PixelSize frameSize)
{
    auto const response = parseAnimationResponse(message, asked, frameSize);
    if (!response)
        return;
    mustHold(!message.isCut && message.descriptors == 0 && response->id == asked.id);
    if (response->status != AnimationStatus::done)
        return;
    mustHold(response->width > 0 && response->height > 0);
    if (asked.operation == AnimationOperation::open)
        return;
    mustHold(PixelSize { response->width, response->height } == frameSize);
    mustHold(response->number > 0);
    auto const height = static_cast<std::uint64_t>(response->height);
    mustHold(response->bytesPerRow >= static_cast<std::uint64_t>(response->width) * 4);
    mustHold(response->bytesPerRow <= asked.spaceBytes);
    mustHold(response->bytesPerRow * height <= asked.spaceBytes);
}

} // namespace

// What either side of an animation's process may be told. The first bytes choose what was asked.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    constexpr std::size_t asking = 16;
    if (length < asking)
        return 0;
    DecoderMessage message;
    message.descriptors = data[0] % 3U;
    message.isCut = data[1] % 8 == 7;
    message.bytes = std::as_bytes(std::span(data + asking, length - asking));
    checkRequest(message);
    AnimationRequest asked;
    asked.id = data[2];
    asked.operation = data[3] % 2 == 0 ? AnimationOperation::open : AnimationOperation::frame;
    std::uint16_t sides[3] {};
    std::memcpy(sides, data + 4, sizeof sides);
    asked.maxPixel = sides[0];
    std::memcpy(&asked.spaceBytes, data + 10, 4);
    checkResponse(message, asked, { sides[1], sides[2] });
    return 0;
}
