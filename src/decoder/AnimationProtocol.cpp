#include "decoder/AnimationProtocol.h"
#include "codecs/DecodeLimits.h"
#include "posix/OpenedFile.h"
#include <algorithm>
#include <cstring>
#include <limits>

namespace pixelhain {

namespace {

// The longest delay that any format can state, 65535 s.
constexpr std::uint64_t longestDelay = 65'535'000'000;

// A record of this size, alone in its message.
template <typename Record>
std::optional<Record> recordIn(DecoderMessage const& message, std::size_t descriptors)
{
    Record record;
    if (message.isCut || message.bytes.size() != sizeof record
        || message.descriptors != descriptors)
        return std::nullopt;
    std::memcpy(&record, message.bytes.data(), sizeof record);
    if (record.magic != Record::theMagic)
        return std::nullopt;
    return record;
}

bool isOpened(AnimationResponse const& response, AnimationRequest const& asked)
{
    auto const width = response.width;
    auto const height = response.height;
    return isWithinLimits(width, height)
        && std::int64_t { width } * height <= DecodeLimits::canvasPixels
        && (asked.maxPixel == 0 || std::max(width, height) <= asked.maxPixel) && response.flags == 0
        && response.bytesPerRow == 0
        && response.number <= std::uint64_t { std::numeric_limits<std::int32_t>::max() };
}

bool isFrame(AnimationResponse const& response, AnimationRequest const& asked, PixelSize size)
{
    // Longer rows than any bitmap's would make a small picture cost as much as a large one.
    constexpr std::uint64_t longestGap = 64;
    auto const rowBytes = static_cast<std::uint64_t>(size.width) * 4;
    return PixelSize { response.width, response.height } == size && size.height > 0
        && (response.flags & ~AnimationResponse::isOpaque) == 0 && response.bytesPerRow % 4 == 0
        && response.bytesPerRow >= rowBytes && response.bytesPerRow < rowBytes + longestGap
        && response.bytesPerRow <= asked.spaceBytes / static_cast<std::uint64_t>(size.height)
        && response.number > 0 && response.number <= longestDelay;
}

bool saysNothingMore(AnimationResponse const& response)
{
    return response.flags == 0 && response.width == 0 && response.height == 0
        && response.bytesPerRow == 0 && response.number == 0;
}

} // namespace

std::optional<AnimationRequest> parseAnimationRequest(DecoderMessage const& message)
{
    auto const request = recordIn<AnimationRequest>(message, 1);
    if (!request || request->id == 0 || request->unused != 0 || request->maxPixel < 0)
        return std::nullopt;
    auto const isOpen = request->operation == AnimationOperation::open;
    if (isOpen
        && (request->fileBytes > OpenedFile::maxSize || request->spaceBytes != 0
            || request->frame != 0))
        return std::nullopt;
    if (!isOpen
        && (request->operation != AnimationOperation::frame || request->spaceBytes == 0
            || request->spaceBytes > DecodeLimits::bitmap || request->fileBytes != 0
            || request->maxPixel != 0))
        return std::nullopt;
    return request;
}

std::optional<AnimationResponse> parseAnimationResponse(
    DecoderMessage const& message, AnimationRequest const& asked, PixelSize frameSize)
{
    auto const response = recordIn<AnimationResponse>(message, 0);
    if (!response || response->id != asked.id)
        return std::nullopt;
    auto const isOpen = asked.operation == AnimationOperation::open;
    auto isGood = false;
    if (response->status == AnimationStatus::done)
        isGood = isOpen ? isOpened(*response, asked) : isFrame(*response, asked, frameSize);
    else if (response->status == AnimationStatus::endOfLoop)
        isGood = !isOpen && saysNothingMore(*response);
    else if (response->status == AnimationStatus::failed)
        isGood = saysNothingMore(*response);
    return isGood ? response : std::nullopt;
}

} // namespace pixelhain
