#include "decoder/Worker.h"
#include "codecs/CountedBytes.h"
#include "codecs/DecodeLimits.h"
#include "codecs/FileProperties.h"
#include "decoder/CarefulSource.h"
#include "decoder/ProcessorAlarm.h"
#include "decoder/PropertiesRecord.h"
#include "decoder/SpaceMemory.h"
#include "decoder/WorkerLimits.h"
#include "images/DecodeRules.h"
#include "posix/OpenedFile.h"
#include <algorithm>
#include <cstring>
#include <malloc.h>
#include <poll.h>
#include <utility>

namespace pixelhain {

namespace {

// Without work for so long a worker gives back the memory that it kept for the next picture.
constexpr int idleMilliseconds = 2000;

void waitForWork(RecordSocket const& socket)
{
    pollfd waited { socket.descriptor(), POLLIN, 0 };
    if (::poll(&waited, 1, idleMilliseconds) == 0)
        ::malloc_trim(0);
}

DecoderResponse plainResponse(DecoderStatus status, std::uint64_t bytes)
{
    DecoderResponse response;
    response.status = status;
    response.bytes = bytes;
    return response;
}

// The size as it may be stated; nothing if it is none that could be.
std::optional<PixelSize> statedSize(ImageMeta const& meta)
{
    if (!meta.size || meta.size->longestSide() > largestStatedSide
        || std::min(meta.size->width, meta.size->height) <= 0)
        return std::nullopt;
    return meta.size;
}

DecoderResponse metaOf(ImageSource& image)
{
    auto const meta = readMeta(image);
    DecoderResponse response;
    response.status = DecoderStatus::done;
    if (meta.isAnimated)
        response.flags |= DecoderResponse::isAnimated;
    if (auto const size = statedSize(meta)) {
        response.flags |= DecoderResponse::hasSize;
        response.width = size->width;
        response.height = size->height;
    }
    return response;
}

// The longest side that is asked for, however it is asked.
int longestSide(DecoderRequest const& request, PixelSize size)
{
    return request.maxPixel > 0 ? request.maxPixel : size.longestSide();
}

// What the picture will take.
std::uint64_t spaceNeeded(DecoderRequest const& request, PixelSize size)
{
    return spaceForPicture(redrawnSize(size, longestSide(request, size)));
}

} // namespace

Worker::Worker(RecordSocket socket, WritableSpace space, Opener opener, std::uint64_t memory,
    AnimationServer::Opener animations)
    : socket_(std::move(socket))
    , space_(std::move(space))
    , opener_(std::move(opener))
    , memory_(memory)
    , animations_(std::move(animations))
{
}

void Worker::run(std::uint32_t holds)
{
    auto const sign = plainResponse(DecoderStatus::ready, holds);
    if (!socket_.send(sign))
        return;
    do {
        waitForWork(socket_);
    } while (serve(ReceivedRecord::withDescriptors(socket_)));
}

// Whether there may be more to come.
bool Worker::serve(ReceivedRecord received)
{
    if (received.isEnd())
        return false;
    ProcessorAlarm const alarm(WorkerLimits::requestTime);
    if (auto const request = parseAnimationRequest(received.message())) {
        auto const response = animations_.answer(*request, received.takeDescriptor(0));
        return socket_.send(response);
    }
    auto const request = parseRequest(received.message());
    if (!request)
        return false;
    auto response = answer(*request, received.takeDescriptor(0), received.takeDescriptor(1));
    response.id = request->id;
    return socket_.send(response);
}

DecoderResponse Worker::answer(
    DecoderRequest const& request, Descriptor file, Descriptor space) const
try {
    auto bytes = OpenedFile::adopt(std::move(file), request.fileBytes);
    if (request.operation == DecoderOperation::readProperties)
        return readProperties(request, std::move(bytes));
    std::uint64_t count = 0;
    auto image = opener_(std::make_unique<CountedBytes>(std::move(bytes), count));
    if (!image)
        return {};
    if (request.operation == DecoderOperation::readMeta)
        return metaOf(*image);
    auto response = request.operation == DecoderOperation::glance
        ? glance(request, std::move(image))
        : decode(request, std::move(image), std::move(space));
    if (response.status == DecoderStatus::done)
        response.bytesRead = count;
    return response;
} catch (...) {
    return {};
}

DecoderResponse Worker::decode(
    DecoderRequest const& request, std::unique_ptr<ImageSource> image, Descriptor space) const
{
    auto const size = image->pixelSize();
    auto const needed = size ? spaceNeeded(request, *size) : 0;
    if (needed > DecodeLimits::bitmap)
        return {};
    if (needed > request.spaceBytes)
        return plainResponse(DecoderStatus::needsSpace, needed);
    WritableSpace passed;
    if (request.space == DecoderSpace::passed)
        passed = WritableSpace(space.get(), request.spaceBytes);
    auto const& target = request.space == DecoderSpace::passed ? passed : space_;
    CarefulSource careful(std::move(image), memory_);
    std::optional<DecodedPicture> picture;
    if (request.smallJpegs == SmallJpegs::pass && request.maxPixel > 0)
        picture = passedJpeg(careful, request.maxPixel, request.previews);
    if (picture && picture->jpeg.bytes->size() <= target.size())
        return deliver(picture->jpeg, picture->origin, target);
    {
        SpaceMemory const memory(target, size ? longestSide(request, *size) : request.maxPixel);
        picture = request.maxPixel > 0 ? decodeImage(careful, request.maxPixel, request.previews)
                                       : decodeFullImage(careful);
    }
    if (picture)
        return deliver(*picture, target);
    if (auto const missing = careful.missingMemory())
        return plainResponse(DecoderStatus::needsMemory, *missing);
    return {};
}

// A picture that does not fit is left out: the next one to come is better anyway.
DecoderResponse Worker::glance(
    DecoderRequest const& request, std::unique_ptr<ImageSource> image) const
{
    CarefulSource careful(std::move(image), memory_);
    auto const glance = [&] {
        SpaceMemory const memory(space_, request.maxPixel);
        return glanceAt(careful, request.maxPixel);
    }();
    DecoderResponse response;
    response.status = DecoderStatus::done;
    if (!glance.embedded.isEmpty()
        && glance.embedded.cost() <= std::min<std::uint64_t>(request.spaceBytes, space_.size()))
        response = deliver({ glance.embedded, PixelOrigin::embedded }, space_);
    if (glance.meta.isAnimated)
        response.flags |= DecoderResponse::isAnimated;
    if (glance.isQuick)
        response.flags |= DecoderResponse::isQuick;
    if (auto const size = statedSize(glance.meta)) {
        response.flags |= DecoderResponse::hasSize;
        response.photoWidth = size->width;
        response.photoHeight = size->height;
    }
    return response;
}

DecoderResponse Worker::readProperties(
    DecoderRequest const& request, std::unique_ptr<ByteSource> file) const
{
    auto const properties = readFileProperties(std::move(file), opener_);
    if (!properties)
        return {};
    auto const record = packProperties(*properties);
    if (record.size() > std::min<std::uint64_t>(request.spaceBytes, space_.size()))
        return {};
    if (!record.empty())
        std::memcpy(space_.data(), record.data(), record.size());
    return plainResponse(DecoderStatus::done, record.size());
}

DecoderResponse Worker::deliver(DecodedPicture const& picture, WritableSpace const& target)
{
    auto const& bitmap = picture.bitmap;
    if (bitmap.cost() > target.size())
        return bitmap.cost() <= DecodeLimits::bitmap && target
            ? plainResponse(DecoderStatus::needsSpace, bitmap.cost())
            : DecoderResponse {};
    if (bitmap.pixels.get() != target.data())
        std::memcpy(target.data(), bitmap.row(0), bitmap.cost());
    DecoderResponse response;
    response.status = DecoderStatus::done;
    response.origin = picture.origin;
    response.flags = bitmap.isOpaque ? DecoderResponse::isOpaque : 0;
    response.width = bitmap.size.width;
    response.height = bitmap.size.height;
    response.bytesPerRow = bitmap.bytesPerRow;
    response.bytes = bitmap.cost();
    return response;
}

DecoderResponse Worker::deliver(
    CodedJpeg const& jpeg, PixelOrigin origin, WritableSpace const& target)
{
    std::memcpy(target.data(), jpeg.bytes->data(), jpeg.bytes->size());
    auto response = plainResponse(DecoderStatus::done, jpeg.bytes->size());
    response.origin = origin;
    response.flags = DecoderResponse::isCoded;
    response.width = jpeg.size.width;
    response.height = jpeg.size.height;
    return response;
}

} // namespace pixelhain
