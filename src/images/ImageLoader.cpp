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

// Of how many of the photos that come next something is made in a hurry, and how large: an eighth
// of a camera's photo is larger and takes a third of a repeated key's time.
constexpr std::size_t mostCoarse = 2;
constexpr int coarsePixels = 512;

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

// A thumbnail that is asked for in steps. What is called belongs to the main thread.
struct PendingThumbnail {
    FileUrl url;
    int maxPixel = 0;
    Turn turn {};
    CancelFlag flag {};
    ImageLoader::LookDone looked {};
    ImageLoader::ImageDone done {};
};

using Thumbnail = std::shared_ptr<PendingThumbnail>;

void deliverThumbnail(MainLoop& loop, Thumbnail const& pending, ImageRef image)
{
    loop.post([pending, image = std::move(image)]() mutable {
        pending->looked = nullptr;
        if (auto const done = std::exchange(pending->done, nullptr))
            done(std::move(image));
    });
}

void addThumbnailItems(Core const& core);

// An item does the job that is most urgent when it starts, whichever it was added for.
void runThumbnailItem(Core const& core)
{
    if (core->isClosed())
        return;
    if (auto const job = core->thumbnails.start())
        job->run();
    addThumbnailItems(core);
}

void addThumbnailItems(Core const& core)
{
    for (auto missing = core->thumbnails.claimItems(); missing > 0; --missing)
        core->enqueue(core->thumbQueue(), [core] { runThumbnailItem(core); });
}

// The core holds the jobs, so these do not hold it.
void addThumbnailJob(
    LoaderCore& core, Thumbnail const& pending, ThumbnailJobs::Step step, std::function<void()> run)
{
    core.thumbnails.add({ pending, pending->turn, step,
        [flag = &pending->flag] { return flag->isSet(); }, std::move(run) });
}

void addDecoding(LoaderCore& core, Thumbnail const& pending, ThumbnailJobs::Step step)
{
    addThumbnailJob(core, pending, step, [&core, pending] {
        auto image = core.findOrMakeThumbnail(pending->url, pending->maxPixel);
        deliverThumbnail(core.loop(), pending, std::move(image));
    });
}

void lookInto(LoaderCore& core, Thumbnail const& pending)
{
    auto glance = core.glance(pending->url, pending->maxPixel);
    FirstLook look;
    bool const isQuick = glance && glance->isQuick;
    if (glance) {
        look.meta = glance->meta;
        look.bytesRead = glance->bytesRead;
        if (!glance->embedded.isEmpty())
            look.embedded = std::make_shared<CGImageBox const>(
                CGImageBox { std::move(glance->embedded), PixelOrigin::embedded });
    }
    core.loop().post([pending, look = std::move(look)] {
        if (auto const looked = std::exchange(pending->looked, nullptr))
            looked(look);
    });
    using Step = ThumbnailJobs::Step;
    addDecoding(core, pending, isQuick ? Step::quick : Step::slow);
}

void beginThumbnail(Core const& core, Thumbnail const& pending, ThumbnailJobs::Step step)
{
    if (auto hit = core->findThumbnail(pending->url, pending->maxPixel)) {
        core->thumbnails.forget(pending);
        deliverThumbnail(core->loop(), pending, std::move(hit));
    } else if (pending->flag.isSet()) {
        core->thumbnails.forget(pending);
    } else if (step == ThumbnailJobs::Step::glance) {
        addThumbnailJob(
            *core, pending, step, [core = core.get(), pending] { lookInto(*core, pending); });
    } else {
        addDecoding(*core, pending, step);
    }
    addThumbnailItems(core);
}

void addPictureItems(Core const& core);

// An item takes the job that is most urgent when it starts, whichever it was added for.
void runPictureItem(Core const& core)
{
    if (core->isClosed())
        return;
    if (auto const job = core->pictures.start(core->displayPixelSize)) {
        addPictureItems(core); // its neighbours, beside it
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
    , pace_(services.loop, [this] {
        core_->pictures.hurry(false);
        addPictureItems(core_);
    })
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

Task ImageLoader::loadThumbnail(
    FileUrl const& url, int maxPixel, Turn const& turn, LookDone looked, ImageDone done)
{
    auto const pending = std::make_shared<PendingThumbnail>();
    pending->url = url;
    pending->maxPixel = maxPixel;
    pending->turn = turn;
    auto const step = looked ? ThumbnailJobs::Step::glance : ThumbnailJobs::Step::slow;
    pending->looked = std::move(looked);
    pending->done = std::move(done);
    addThumbnailJob(*core_, pending, step, nullptr);
    core_->background().run(Priority::userInteractive,
        [core = core_, pending, step] { beginThumbnail(core, pending, step); });
    return Task([pending] {
        pending->flag.set();
        pending->looked = nullptr;
        pending->done = nullptr;
    });
}

void ImageLoader::turnsChanged()
{
    addThumbnailItems(core_);
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

// The gallery asks for multiples of this, up to the largest cells on the finest screens.
ImageRef ImageLoader::largestCachedThumbnail(FileUrl const& url) const
{
    constexpr int step = 128;
    constexpr int largest = 12 * step;
    for (int pixels = largest; pixels > 0; pixels -= step)
        if (auto found = core_->findThumbnail(url, pixels))
            return found;
    return nullptr;
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

Task ImageLoader::loadMetaNow(FileUrl const& url, MetaDone done)
{
    return runThen(
        core_->background(), core_->loop(), Priority::userInitiated,
        [core = core_, url] { return core->isClosed() ? std::nullopt : core->findOrReadMeta(url); },
        std::move(done));
}

Task ImageLoader::loadPreviewNow(FileUrl const& url, ImageDone done)
{
    return runThen(
        core_->background(), core_->loop(), Priority::userInitiated,
        [core = core_, url] {
            return core->isClosed()
                ? nullptr
                : core->decode(url, core->displayPixelSize, EmbeddedPreviews::only);
        },
        std::move(done));
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
    pace_.step(shown);
    core_->pictures.hurry(pace_.isHasty());
    if (pace_.isHasty())
        makeCoarse(next.first(std::min(mostCoarse, next.size())));
    core_->pictures.want(wanted, missing, core_->displayPixelSize);
    addPictureItems(core_);
}

// Of the photos that come next, unless there is something of them, and never more at once: of some
// formats it takes as long as the picture.
void ImageLoader::makeCoarse(std::span<FileUrl const> next)
{
    auto const isAsked = [this](FileUrl const& url) {
        return std::ranges::find(coarse_, url, &Coarse::url) != coarse_.end();
    };
    for (auto const& url : next)
        if (coarse_.size() < mostCoarse && !isAsked(url) && !cachedDisplayImage(url)
            && !largestCachedThumbnail(url))
            coarse_.push_back({ url,
                loadThumbnail(url, coarsePixels, Turn(), nullptr, [this, url](ImageRef const&) {
                    std::erase_if(coarse_, [&](Coarse const& one) { return one.url == url; });
                }) });
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
