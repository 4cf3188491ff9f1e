#include "images/ImageLoader.h"
#include "base/CancelFlag.h"
#include "images/LoaderCore.h"
#include "ports/Background.h"
#include "ports/WorkQueue.h"
#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>
#include <vector>

namespace pixelhain {

namespace {

// Only the main thread touches `done`, so that what it holds is freed there as well.
template <typename Result> struct PendingLoad {
    CancelFlag flag;
    std::function<void(Result)> done;
};

template <typename Result> using Pending = std::shared_ptr<PendingLoad<Result>>;
using Core = std::shared_ptr<LoaderCore>;

template <typename Result> struct Load {
    std::function<Result(LoaderCore&)> lookUp; ///< false where nothing is cached
    std::function<void(Core const&, Pending<Result> const&)> queue; ///< when nothing was found
};

template <typename Result> void deliver(MainLoop& loop, Pending<Result> pending, Result result)
{
    loop.post([pending = std::move(pending), result = std::move(result)]() mutable {
        if (auto const done = std::exchange(pending->done, nullptr))
            done(std::move(result));
    });
}

template <typename Result>
Task run(Core const& core, Load<Result> load, std::function<void(Result)> done)
{
    auto const pending = std::make_shared<PendingLoad<Result>>();
    pending->done = std::move(done);
    // Look-ups never wait for anything: they need not stand behind work that does.
    core->background().run(Priority::userInteractive, [core, pending, load = std::move(load)] {
        if (pending->flag.isSet())
            return;
        if (auto hit = load.lookUp(*core))
            deliver(core->loop(), pending, std::move(hit));
        else
            load.queue(core, pending);
    });
    return Task([pending] {
        pending->flag.set();
        pending->done = nullptr;
    });
}

// A load that has a work item of its own.
template <typename Result> auto onQueue(WorkQueue& queue, std::function<Result(LoaderCore&)> body)
{
    return [&queue, body = std::move(body)](Core const& core, Pending<Result> const& pending) {
        core->enqueue(queue, [core, pending, body] {
            if (!pending->flag.isSet() && !core->isClosed())
                deliver(core->loop(), pending, body(*core));
        });
    };
}

void addPictureItems(Core const& core);

// An item takes the job that is most urgent when it starts, whichever it was added for.
void runPictureItem(Core const& core)
{
    if (core->isClosed())
        return;
    if (auto const job = core->pictures.start(core->displayPixelSize)) {
        auto const image = core->pictureFor(*job);
        // A large picture that nobody waits for any more is freed here, not on the main thread.
        for (auto const& waiter : core->pictures.finish(job->number))
            if (!waiter.isDropped())
                waiter.deliver(image);
    }
    addPictureItems(core);
}

void addPictureItems(Core const& core)
{
    for (auto missing = core->pictures.claimItems(); missing > 0; --missing)
        core->enqueue(core->displayQueue(), [core] { runPictureItem(core); });
}

auto asJob(FileUrl const& url, PictureSize size)
{
    return [url, size](Core const& core, Pending<ImageRef> const& pending) {
        auto const isDropped = [pending] { return pending->flag.isSet(); };
        auto const tell = [&loop = core->loop(), pending](
                              ImageRef image) { deliver(loop, pending, std::move(image)); };
        core->pictures.ask(url, size, core->displayPixelSize, { isDropped, tell });
        addPictureItems(core);
    };
}

} // namespace

ImageLoader::ImageLoader(Services const& services)
    : ImageLoader(services, Limits {})
{
}

ImageLoader::ImageLoader(Services const& services, Limits const& limits)
    : services_(services)
    , core_(std::make_shared<LoaderCore>(services, limits))
{
}

ImageLoader::~ImageLoader()
{
    core_->close();
}

Task ImageLoader::loadThumbnail(FileUrl const& url, int maxPixel, ImageDone done)
{
    return run<ImageRef>(core_,
        { [url, maxPixel](LoaderCore& core) { return core.findThumbnail(url, maxPixel); },
            onQueue<ImageRef>(services_.thumbQueue,
                [url, maxPixel](LoaderCore& core) { return core.makeThumbnail(url, maxPixel); }) },
        std::move(done));
}

Task ImageLoader::loadMeta(FileUrl const& url, MetaDone done)
{
    using Meta = std::optional<ImageMeta>;
    return run<Meta>(core_,
        { [url](LoaderCore& core) { return core.findMeta(url); },
            onQueue<Meta>(services_.thumbQueue,
                [url](LoaderCore& core) { return core.findOrReadMeta(url); }) },
        std::move(done));
}

Task ImageLoader::loadDisplayImage(FileUrl const& url, ImageDone done)
{
    return run<ImageRef>(core_,
        { [url](LoaderCore& core) { return core.findDisplayImage(url); },
            asJob(url, PictureSize::display) },
        std::move(done));
}

Task ImageLoader::loadFullImage(FileUrl const& url, ImageDone done)
{
    return run<ImageRef>(core_,
        { [](LoaderCore&) { return ImageRef {}; }, asJob(url, PictureSize::full) },
        std::move(done));
}

ImageRef ImageLoader::cachedThumbnail(FileUrl const& url, int maxPixel) const
{
    return core_->findThumbnail(url, maxPixel);
}

ImageRef ImageLoader::cachedDisplayImage(FileUrl const& url) const
{
    return core_->findDisplayImage(url);
}

std::optional<ImageMeta> ImageLoader::knownMeta(FileUrl const& url) const
{
    return core_->findMeta(url);
}

std::optional<ImageMeta> ImageLoader::cachedMeta(FileUrl const& url)
{
    return core_->findOrReadMeta(url);
}

void ImageLoader::prefetchDisplay(FileUrl const& url)
{
    if (!core_->findDisplayImage(url))
        std::ignore = core_->makeDisplayImage(url, core_->displayPixelSize);
}

void ImageLoader::prefetchAround(FileUrl const& shown, std::span<FileUrl const> next)
{
    auto const isMissing = [this](FileUrl const& url) { return !core_->findDisplayImage(url); };
    std::vector<FileUrl> missing;
    std::ranges::copy_if(next, std::back_inserter(missing), isMissing);
    // An animation is not shown as a still picture; one that is not known as such yet may be.
    auto const meta = core_->findMeta(shown);
    auto const isAnimated = meta && meta->isAnimated;
    auto const wanted = !isAnimated && isMissing(shown) ? std::optional(shown) : std::nullopt;
    core_->pictures.want(wanted, missing, core_->displayPixelSize);
    addPictureItems(core_);
}

ImageRef ImageLoader::decodeImage(FileUrl const& url, int maxPixel, EmbeddedPreviews previews) const
{
    return core_->decode(url, maxPixel, previews);
}

std::optional<DecodedPicture> ImageLoader::decodeOrPass(FileUrl const& url, int maxPixel) const
{
    return services_.decoder.decode({ url, maxPixel, EmbeddedPreviews::prefer, SmallJpegs::pass });
}

std::optional<ImageMeta> ImageLoader::readMeta(FileUrl const& url) const
{
    return core_->readMeta(url);
}

int ImageLoader::displayPixelSize() const
{
    return core_->displayPixelSize;
}

void ImageLoader::updateDisplayPixelSize(std::span<Screen const> screens)
{
    core_->displayPixelSize = displayPixelSizeFor(screens);
}

} // namespace pixelhain
