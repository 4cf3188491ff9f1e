#include "decoder/Protocol.h"
#include "fuzz/Fuzz.h"
#include <cstring>

using namespace pixelhain;

// What a worker that was taken over says to the program. The first bytes choose what was asked.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    constexpr std::size_t asking = 16;
    if (length < asking)
        return 0;
    DecoderRequest asked;
    asked.id = data[0];
    asked.operation = static_cast<DecoderOperation>(1 + data[1] % 4);
    asked.space = needsSpace(asked.operation) ? DecoderSpace::own : DecoderSpace::none;
    std::uint16_t most = 0;
    std::memcpy(&most, data + 2, sizeof most);
    asked.maxPixel = most;
    std::memcpy(&asked.spaceBytes, data + 4, 4);
    asked.smallJpegs = data[10] % 2 == 0 ? SmallJpegs::decode : SmallJpegs::pass;
    DecoderMessage message;
    message.descriptors = data[8] % 8 == 7 ? 1 : 0;
    message.isCut = data[9] % 8 == 7;
    message.bytes = std::as_bytes(std::span(data + asking, length - asking));
    static_cast<void>(parseReadySign(message));
    auto const response = parseResponse(message, asked);
    if (!response)
        return 0;
    mustHold(!message.isCut && message.descriptors == 0);
    mustHold(response->id == asked.id);
    mustHold(
        asked.operation != DecoderOperation::readProperties || response->bytes <= asked.spaceBytes);
    bool const isPicture = asked.operation == DecoderOperation::decode
        || (asked.operation == DecoderOperation::glance && response->bytesPerRow > 0);
    if (!isPicture || response->status != DecoderStatus::done)
        return 0;
    auto const width = static_cast<std::uint64_t>(response->width);
    auto const height = static_cast<std::uint64_t>(response->height);
    mustHold(response->width > 0 && response->height > 0);
    mustHold(asked.maxPixel == 0
        || (response->width <= asked.maxPixel && response->height <= asked.maxPixel));
    if ((response->flags & DecoderResponse::isCoded) != 0) {
        mustHold(asked.smallJpegs == SmallJpegs::pass);
        mustHold(response->bytes <= asked.spaceBytes);
        return 0;
    }
    mustHold(response->bytesPerRow >= width * 4 && response->bytesPerRow <= asked.spaceBytes);
    mustHold(response->bytesPerRow * height <= asked.spaceBytes);
    mustHold(response->origin == PixelOrigin::embedded || response->origin == PixelOrigin::scaled
        || response->origin == PixelOrigin::full);
    return 0;
}
