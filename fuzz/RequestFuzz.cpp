#include "decoder/Protocol.h"
#include "fuzz/Fuzz.h"

using namespace pixelhain;

// What the worker is told, by whoever holds the other end of its socket.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    if (length < 2)
        return 0;
    DecoderMessage message;
    message.descriptors = data[0] % 4U;
    message.isCut = data[1] % 8 == 7;
    message.bytes = std::as_bytes(std::span(data + 2, length - 2));
    auto const request = parseRequest(message);
    if (!request)
        return 0;
    mustHold(!message.isCut && message.descriptors >= 1);
    mustHold(request->id != 0 && request->maxPixel >= 0);
    mustHold(request->operation == DecoderOperation::readMeta
        || request->operation == DecoderOperation::decode
        || request->operation == DecoderOperation::readProperties
        || request->operation == DecoderOperation::glance);
    mustHold((request->space == DecoderSpace::none) != needsSpace(request->operation));
    return 0;
}
