#include "decoder/Protocol.h"
#include "codecs/BareJpeg.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PropertyLimits.h"
#include "decoder/Lockdown.h"
#include "posix/OpenedFile.h"
#include <algorithm>
#include <cstring>

namespace pixelhain {

namespace {

// A record of this size, alone in its message.
template <typename Record> std::optional<Record> recordIn(DecoderMessage const& message)
{
    Record record;
    if (message.isCut || message.bytes.size() != sizeof record)
        return std::nullopt;
    std::memcpy(&record, message.bytes.data(), sizeof record);
    if (record.magic != Record::theMagic)
        return std::nullopt;
    return record;
}

bool isKnown(DecoderRequest const& request)
{
    return request.operation >= DecoderOperation::readMeta
        && request.operation <= DecoderOperation::glance && request.space <= DecoderSpace::passed
        && request.previews <= EmbeddedPreviews::only && request.smallJpegs <= SmallJpegs::pass
        && std::ranges::all_of(request.unused, [](auto byte) { return byte == 0; });
}

bool hasItsSpace(DecoderRequest const& request, std::size_t descriptors)
{
    auto const fits = needsSpace(request.operation) == (request.space != DecoderSpace::none);
    auto const isPicture = request.operation == DecoderOperation::decode;
    if (request.space == DecoderSpace::passed && !isPicture)
        return false;
    auto const file = std::size_t { 1 };
    return fits && (request.space == DecoderSpace::none) == (request.spaceBytes == 0)
        && request.spaceBytes <= DecodeLimits::bitmap
        && descriptors == file + (request.space == DecoderSpace::passed ? 1 : 0);
}

bool saysNothingMore(DecoderResponse const& response)
{
    return response.origin == PixelOrigin::embedded && response.flags == 0 && response.width == 0
        && response.height == 0 && response.bytesPerRow == 0 && response.bytesRead == 0
        && response.photoWidth == 0 && response.photoHeight == 0;
}

bool hasPixels(DecoderResponse const& response, DecoderRequest const& asked)
{
    auto const width = response.width;
    auto const height = response.height;
    if (!isWithinLimits(width, height)
        || (asked.maxPixel > 0 && std::max(width, height) > asked.maxPixel))
        return false;
    // Longer rows than any bitmap's would make a small picture cost as much as a large one.
    constexpr std::uint64_t longestGap = 64;
    auto const rows = static_cast<std::uint64_t>(height);
    auto const rowBytes = static_cast<std::uint64_t>(width) * 4;
    return response.bytesPerRow % 4 == 0 && response.bytesPerRow >= rowBytes
        && response.bytesPerRow < rowBytes + longestGap
        && response.bytesPerRow <= asked.spaceBytes / rows
        && response.bytes == response.bytesPerRow * rows;
}

bool saysNothingOfPhoto(DecoderResponse const& response)
{
    return response.photoWidth == 0 && response.photoHeight == 0;
}

bool isPicture(DecoderResponse const& response, DecoderRequest const& asked)
{
    return response.origin <= PixelOrigin::full
        && (response.flags & ~DecoderResponse::isOpaque) == 0 && saysNothingOfPhoto(response)
        && hasPixels(response, asked);
}

// What is in the space is looked at once it is copied out of it.
bool isCodedPicture(DecoderResponse const& response, DecoderRequest const& asked)
{
    return asked.smallJpegs == SmallJpegs::pass && response.flags == DecoderResponse::isCoded
        && saysNothingOfPhoto(response) && response.origin <= PixelOrigin::full
        && isWithinLimits(response.width, response.height)
        && std::max(response.width, response.height) <= asked.maxPixel && response.bytesPerRow == 0
        && response.bytes > 0 && response.bytes <= asked.spaceBytes
        && response.bytes <= mostBareBytes(asked.maxPixel);
}

// What the picture that is asked for may take; of every pixel nobody knows.
std::uint64_t mostSpace(DecoderRequest const& asked)
{
    if (asked.maxPixel == 0)
        return DecodeLimits::bitmap;
    return std::min<std::uint64_t>(
        DecodeLimits::bitmap, spaceForPicture({ asked.maxPixel, asked.maxPixel }));
}

// The size that is stated, where one is.
bool isStatedSize(DecoderResponse const& response, std::int32_t width, std::int32_t height)
{
    auto const isSide = [](std::int32_t side) { return side > 0 && side <= largestStatedSide; };
    return (response.flags & DecoderResponse::hasSize) != 0 ? isSide(width) && isSide(height)
                                                            : width == 0 && height == 0;
}

bool isMeta(DecoderResponse const& response)
{
    constexpr auto known = DecoderResponse::hasSize | DecoderResponse::isAnimated;
    return isStatedSize(response, response.width, response.height) && (response.flags & ~known) == 0
        && response.origin == PixelOrigin::embedded && response.bytesPerRow == 0
        && response.bytes == 0 && response.bytesRead == 0 && saysNothingOfPhoto(response);
}

bool isGlance(DecoderResponse const& response, DecoderRequest const& asked)
{
    constexpr auto known = DecoderResponse::hasSize | DecoderResponse::isAnimated
        | DecoderResponse::isOpaque | DecoderResponse::isQuick;
    if ((response.flags & ~known) != 0 || response.origin != PixelOrigin::embedded
        || !isStatedSize(response, response.photoWidth, response.photoHeight))
        return false;
    bool const isBare = response.width == 0 && response.height == 0 && response.bytesPerRow == 0
        && response.bytes == 0 && (response.flags & DecoderResponse::isOpaque) == 0;
    return isBare || hasPixels(response, asked);
}

// What is in the space is looked at once it is copied out of it.
bool isProperties(DecoderResponse const& response, DecoderRequest const& asked)
{
    return saysNothingMore(response) && response.bytes <= PropertyLimits::all
        && response.bytes <= asked.spaceBytes;
}

bool isWhatWasAsked(DecoderResponse const& response, DecoderRequest const& asked)
{
    switch (asked.operation) {
    case DecoderOperation::readMeta:
        return isMeta(response);
    case DecoderOperation::decode:
        return isPicture(response, asked) || isCodedPicture(response, asked);
    case DecoderOperation::readProperties:
        return isProperties(response, asked);
    case DecoderOperation::glance:
        return isGlance(response, asked);
    }
    return false;
}

bool answers(DecoderResponse const& response, DecoderRequest const& asked)
{
    auto const isDecode = asked.operation == DecoderOperation::decode;
    switch (response.status) {
    case DecoderStatus::done:
        return isWhatWasAsked(response, asked);
    case DecoderStatus::nothing:
        return saysNothingMore(response) && response.bytes == 0;
    case DecoderStatus::needsSpace:
        return isDecode && saysNothingMore(response) && response.bytes > asked.spaceBytes
            && response.bytes <= mostSpace(asked);
    case DecoderStatus::needsMemory:
        return isDecode && saysNothingMore(response) && response.bytes > 0;
    case DecoderStatus::ready:
        break;
    }
    return false;
}

} // namespace

std::optional<DecoderRequest> parseRequest(DecoderMessage const& message)
{
    auto const request = recordIn<DecoderRequest>(message);
    if (!request || !isKnown(*request) || !hasItsSpace(*request, message.descriptors)
        || request->id == 0 || request->fileBytes > OpenedFile::maxSize || request->maxPixel < 0)
        return std::nullopt;
    return request;
}

std::optional<std::uint32_t> parseReadySign(DecoderMessage const& message)
{
    auto const sign = recordIn<DecoderResponse>(message);
    if (!sign || message.descriptors != 0 || sign->status != DecoderStatus::ready || sign->id != 0
        || !saysNothingMore(*sign) || sign->bytes > Lockdown::everything)
        return std::nullopt;
    return static_cast<std::uint32_t>(sign->bytes);
}

std::optional<DecoderResponse> parseResponse(
    DecoderMessage const& message, DecoderRequest const& asked)
{
    auto const response = recordIn<DecoderResponse>(message);
    if (!response || message.descriptors != 0 || response->id != asked.id
        || !answers(*response, asked))
        return std::nullopt;
    return response;
}

std::uint64_t spaceForPicture(PixelSize size)
{
    if (size.width <= 0 || size.height <= 0)
        return 0;
    // Rows begin at multiples of 16 bytes, whichever way round the picture is.
    auto const bytes = [](int width, int height) {
        auto const row = (static_cast<std::uint64_t>(width) * 4 + 15) & ~std::uint64_t { 15 };
        return row * static_cast<std::uint64_t>(height);
    };
    return std::max(bytes(size.width, size.height), bytes(size.height, size.width));
}

} // namespace pixelhain
