#include "images/ImageLoader.h"
#include "base/CancelFlag.h"
#include "images/LoaderCore.h"
#include "ports/Background.h"
#include "ports/WorkQueue.h"
#include <tuple>
#include <utility>

namespace pixelhain {

namespace {

// Only the main thread touches `done`, so that what it holds is freed there as well.
template <typename Result> struct PendingLoad {
    CancelFlag flag;
    std::function<void(Result)> done;
};

template <typename Result> struct Load {
    WorkQueue& queue;
    std::function<Result(LoaderCore&)> lookUp; ///< false where nothing is cached
    std::function<Result(LoaderCore&)> body;
};

template <typename Result>
void deliver(MainLoop& loop, std::shared_ptr<PendingLoad<Result>> pending, Result result)
{
    loop.post([pending = std::move(pending), result = std::move(result)]() mutable {
        if (auto const done = std::exchange(pending->done, nullptr))
            done(std::move(result));
    });
}

template <typename Result>
Task run(
    std::shared_ptr<LoaderCore> const& core, Load<Result> load, std::function<void(Result)> done)
{
    auto const pending = std::make_shared<PendingLoad<Result>>();
    pending->done = std::move(done);
    // Look-ups never wait for anything: they need not stand behind work that does.
    core->background().run(
        Priority::userInteractive, [core, pending, load = std::move(load)]() mutable {
            if (pending->flag.isSet())
                return;
            if (auto hit = load.lookUp(*core)) {
                deliver(core->loop(), std::move(pending), std::move(hit));
                return;
            }
            core->enqueue(load.queue, [core, pending, body = std::move(load.body)] {
                if (!pending->flag.isSet() && !core->isClosed())
                    deliver(core->loop(), pending, body(*core));
            });
        });
    return Task([pending] {
        pending->flag.set();
        pending->done = nullptr;
    });
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
        { services_.thumbQueue,
            [url, maxPixel](LoaderCore& core) { return core.findThumbnail(url, maxPixel); },
            [url, maxPixel](LoaderCore& core) { return core.makeThumbnail(url, maxPixel); } },
        std::move(done));
}

Task ImageLoader::loadMeta(FileUrl const& url, MetaDone done)
{
    return run<std::optional<ImageMeta>>(core_,
        { services_.thumbQueue, [url](LoaderCore& core) { return core.findMeta(url); },
            [url](LoaderCore& core) { return core.findOrReadMeta(url); } },
        std::move(done));
}

Task ImageLoader::loadDisplayImage(FileUrl const& url, ImageDone done)
{
    return run<ImageRef>(core_,
        { services_.displayQueue, [url](LoaderCore& core) { return core.findDisplayImage(url); },
            [url](LoaderCore& core) { return core.makeDisplayImage(url); } },
        std::move(done));
}

Task ImageLoader::loadFullImage(FileUrl const& url, ImageDone done)
{
    return run<ImageRef>(core_,
        { services_.displayQueue, [](LoaderCore&) { return ImageRef {}; },
            [url](LoaderCore& core) { return core.decodeFull(url); } },
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
        std::ignore = core_->makeDisplayImage(url);
}

void ImageLoader::prefetchAround(FileUrl const& shown, std::span<FileUrl const> next)
{
    auto const add = [this](FileUrl const& url) {
        if (core_->findDisplayImage(url))
            return;
        core_->enqueue(services_.displayQueue, [core = core_, url] {
            if (!core->isClosed() && !core->findDisplayImage(url))
                std::ignore = core->makeDisplayImage(url);
        });
    };
    add(shown);
    for (auto const& url : next)
        add(url);
}

ImageRef ImageLoader::decodeImage(FileUrl const& url, int maxPixel, EmbeddedPreviews previews) const
{
    return core_->decode(url, maxPixel, previews);
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
