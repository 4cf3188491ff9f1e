#include "decoder/PooledDecoder.h"
#include "codecs/BareJpeg.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "decoder/AnimationSession.h"
#include "decoder/PropertiesRecord.h"
#include "decoder/WorkerMain.h"
#include "posix/OpenedFile.h"
#include <array>
#include <cstring>
#include <sys/resource.h>
#include <utility>

namespace pixelhain {

namespace {

// Pictures whose space is set aside before anybody knows how large they are. Above that the worker
// is asked first: memory is cheap while nobody touches it, but not addresses.
constexpr int largestUnmeasured = 4096;

// Turns for one file, whatever happens: larger space, more memory, workers that die or do not
// start.
constexpr int mostTurns = 8;

// Unlike most places, this is the calling thread's alone.
int ownNiceness()
{
    return ::getpriority(PRIO_PROCESS, 0);
}

// Whether a worker that ended so may have died of the picture.
bool isThePictures(Exchange::End end)
{
    return end != Exchange::End::gone && end != Exchange::End::neverReady;
}

// Whether another worker may do better. One that came to no end would cost its time again; one that
// lied may have been taken over by the picture before.
bool mayBeChance(Exchange::End end)
{
    return end != Exchange::End::late;
}

Bitmap copied(Bitmap const& shape, std::byte const* from)
{
    auto bitmap = Bitmap::allocate(shape.size, shape.isOpaque);
    if (bitmap.isEmpty())
        return bitmap;
    auto const rowBytes = static_cast<std::size_t>(shape.size.width) * 4;
    if (bitmap.bytesPerRow == shape.bytesPerRow) {
        std::memcpy(bitmap.row(0), from, shape.cost());
        return bitmap;
    }
    for (int y = 0; y < shape.size.height; ++y, from += shape.bytesPerRow)
        std::memcpy(bitmap.row(y), from, rowBytes);
    return bitmap;
}

} // namespace

/// One request and what comes of it.
struct PooledDecoder::Job {
    DecoderRequest request;
    bool isLarge = false; ///< needs the worker for large pictures
    std::uint64_t passedBytes = 0; ///< of the space to be passed; 0: the worker's own will do
    std::unique_ptr<SpaceShelf::Space> passed {};
    int turns = 0;
    std::optional<DecoderResponse> response {};
    Bitmap bitmap {};
    CodedJpeg jpeg {};
    std::optional<PhotoProperties> properties {};
};

PooledDecoder::PooledDecoder(
    WorkerPool::Options options, Deadline deadline, std::chrono::nanoseconds frameTime)
    : deadline_(std::move(deadline))
    , frameTime_(frameTime)
    , pool_(std::move(options))
{
}

std::chrono::nanoseconds PooledDecoder::usualDeadline(DecoderRequest const& request)
{
    if (request.operation != DecoderOperation::decode)
        return DecodeLimits::metadataTime;
    return decodeTime(request.maxPixel);
}

std::optional<DecodedPicture> PooledDecoder::decode(DecodeRequest const& request)
{
    Job job;
    job.request.operation = DecoderOperation::decode;
    job.request.maxPixel = std::max(request.maxPixel, 0);
    job.request.previews = request.previews;
    job.request.smallJpegs = request.smallJpegs;
    auto const space = spaceForPicture({ request.maxPixel, request.maxPixel });
    if (space > ownSpaceBytes && request.maxPixel <= largestUnmeasured)
        job.passedBytes = space;
    auto const response = serve(request.file, job);
    if (!response || (job.bitmap.isEmpty() && !job.jpeg))
        return std::nullopt;
    return DecodedPicture { std::move(job.bitmap), response->origin, std::move(job.jpeg),
        response->bytesRead };
}

std::optional<ImageMeta> PooledDecoder::readMeta(FileUrl const& file)
{
    Job job;
    job.request.operation = DecoderOperation::readMeta;
    auto const response = serve(file, job);
    if (!response)
        return std::nullopt;
    ImageMeta meta;
    if ((response->flags & DecoderResponse::hasSize) != 0)
        meta.size = PixelSize { response->width, response->height };
    meta.isAnimated = (response->flags & DecoderResponse::isAnimated) != 0;
    return meta;
}

std::optional<Glance> PooledDecoder::glance(FileUrl const& file, int maxPixel)
{
    if (maxPixel <= 0)
        return std::nullopt;
    Job job;
    job.request.operation = DecoderOperation::glance;
    job.request.maxPixel = maxPixel;
    auto const response = serve(file, job);
    if (!response)
        return std::nullopt;
    Glance glance;
    if ((response->flags & DecoderResponse::hasSize) != 0)
        glance.meta.size = PixelSize { response->photoWidth, response->photoHeight };
    glance.meta.isAnimated = (response->flags & DecoderResponse::isAnimated) != 0;
    glance.isQuick = (response->flags & DecoderResponse::isQuick) != 0;
    glance.embedded = std::move(job.bitmap);
    glance.bytesRead = response->bytesRead;
    return glance;
}

std::optional<PhotoProperties> PooledDecoder::readProperties(FileUrl const& file)
{
    Job job;
    job.request.operation = DecoderOperation::readProperties;
    static_cast<void>(serve(file, job));
    return std::move(job.properties);
}

std::unique_ptr<AnimationSource> PooledDecoder::openAnimation(FileUrl const& file, int maxPixel)
{
    return AnimationSession::open(
        { pool_, deathsAtPlay_, { frameTime_, frameTime_ * WorkerLimits::clockFactor } }, file,
        std::max(maxPixel, 0));
}

std::optional<DecoderResponse> PooledDecoder::serve(FileUrl const& url, Job& job)
{
    auto const file = OpenedFile::open(url);
    if (!file || file->size() == 0)
        return std::nullopt;
    job.request.fileBytes = file->size();
    while (job.turns++ < mostTurns && !deaths_.isGivenUp(file->descriptor()))
        if (turn(*file, job) == Next::stop)
            break;
    return job.response;
}

PooledDecoder::Next PooledDecoder::turn(OpenedFile const& file, Job& job)
{
    bool const isLarge = job.isLarge;
    auto worker = isLarge ? pool_.takeLarge() : pool_.take(ownNiceness());
    if (!worker)
        return Next::stop;
    auto const exchange = ask(*worker, file, job);
    if (exchange.end != Exchange::End::answered) {
        // What the dead one had a hold of is not used again: it may not be quite dead.
        job.passed.reset();
        if (isThePictures(exchange.end))
            deaths_.record(file.descriptor());
        bury(std::move(worker), job, exchange.end);
        return mayBeChance(exchange.end) ? Next::again : Next::stop;
    }
    deaths_.forgive(file.descriptor());
    auto const next = hear(*worker, job, exchange.response);
    if (job.passed)
        shelf_.giveBack(std::move(job.passed));
    if (isLarge)
        pool_.buryLarge(std::move(worker));
    else
        pool_.giveBack(std::move(worker));
    return next;
}

Exchange PooledDecoder::ask(WorkerProcess& worker, OpenedFile const& file, Job& job)
{
    auto& request = job.request;
    request.id = ++lastId_;
    std::array<int, 2> descriptors { file.descriptor(), -1 };
    std::size_t count = 1;
    if (needsSpace(request.operation)) {
        request.space = DecoderSpace::own;
        request.spaceBytes = ownSpaceBytes;
        if (job.passedBytes > 0)
            job.passed = shelf_.take(
                job.passedBytes, job.isLarge ? SpaceShelf::noWorker : worker.serial());
        if (job.passed) {
            request.space = DecoderSpace::passed;
            request.spaceBytes = job.passedBytes;
            descriptors[count++] = job.passed->memory.descriptor();
        }
    }
    auto const time = deadline_(request);
    auto exchange = Exchange::with(worker, request, std::span(descriptors).first(count),
        { time, time * WorkerLimits::clockFactor });
    if (exchange.end == Exchange::End::answered && exchange.response.status == DecoderStatus::done
        && !isHonest(worker, job, exchange.response))
        exchange.end = Exchange::End::wrong;
    return exchange;
}

// The worker can still write into the space, so only a copy can be trusted to stay what it is.
bool PooledDecoder::isHonest(WorkerProcess const& worker, Job& job, DecoderResponse const& response)
{
    auto const& space = job.passed ? job.passed->memory : worker.space();
    if (job.request.operation == DecoderOperation::readProperties) {
        job.properties = unpackProperties(std::vector(space.data(), space.data() + response.bytes));
        return job.properties.has_value();
    }
    if ((response.flags & DecoderResponse::isCoded) == 0
        || job.request.operation != DecoderOperation::decode)
        return true;
    auto const* const coded = reinterpret_cast<std::uint8_t const*>(space.data());
    std::vector<std::uint8_t> copy(coded, coded + response.bytes);
    auto const bare = bareJpeg(SpanBytes(copy), job.request.maxPixel);
    PixelSize const size { response.width, response.height };
    if (!bare || bare->size != size || bare->bytes != copy)
        return false;
    job.jpeg = { size, std::make_shared<std::vector<std::uint8_t> const>(std::move(copy)) };
    return true;
}

PooledDecoder::Next PooledDecoder::hear(
    WorkerProcess const& worker, Job& job, DecoderResponse const& response)
{
    switch (response.status) {
    case DecoderStatus::done:
        job.response = response;
        if (response.bytesPerRow > 0)
            job.bitmap = pixels(worker, job, response);
        return Next::stop;
    case DecoderStatus::needsSpace:
        if (job.passedBytes >= response.bytes)
            return Next::stop; // there was no memory for it
        job.passedBytes = response.bytes;
        return Next::again;
    case DecoderStatus::needsMemory:
        return std::exchange(job.isLarge, true) ? Next::stop : Next::again;
    case DecoderStatus::nothing:
    case DecoderStatus::ready:
        break;
    }
    return Next::stop;
}

void PooledDecoder::bury(std::unique_ptr<WorkerProcess> worker, Job& job, Exchange::End end)
{
    if (job.isLarge)
        pool_.buryLarge(std::move(worker));
    else if (end == Exchange::End::neverReady)
        pool_.buryUnready(std::move(worker));
    else
        pool_.bury(std::move(worker));
}

// Small pictures are copied out of the space that their worker keeps: new shared memory for each
// would cost twice as long as new memory of our own and the copy together. Large ones stay where
// they are, in memory that is used again.
Bitmap PooledDecoder::pixels(WorkerProcess const& worker, Job& job, DecoderResponse const& response)
{
    Bitmap picture;
    picture.size = { response.width, response.height };
    picture.bytesPerRow = response.bytesPerRow;
    picture.isOpaque = (response.flags & DecoderResponse::isOpaque) != 0;
    if (!job.passed)
        return copied(picture, worker.space().data());
    if (picture.cost() <= ownSpaceBytes)
        return copied(picture, job.passed->memory.data());
    return shelf_.wrap(std::move(job.passed), std::move(picture));
}

} // namespace pixelhain
