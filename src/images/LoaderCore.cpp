#include "images/LoaderCore.h"
#include "ports/WorkQueue.h"
#include <utility>

namespace pixelhain {

namespace {

constexpr int everyPixel = 0;

} // namespace

std::string imageKey(int pixels, FileUrl const& url)
{
    return std::to_string(pixels).append("|").append(url.path());
}

LoaderCore::LoaderCore(ImageLoader::Services const& services, ImageLoader::Limits const& limits)
    : displayPixelSize(limits.displayPixelSize)
    , pictures(limits.pictures)
    , services_(services)
    , thumbCache_(limits.thumbs)
    , displayCache_(limits.displays)
{
}

void LoaderCore::enqueue(WorkQueue& queue, std::function<void()> item)
{
    std::scoped_lock const guard(gate_);
    if (!isClosed())
        queue.add(std::move(item));
}

void LoaderCore::close()
{
    std::scoped_lock const guard(gate_);
    isClosed_.store(true, std::memory_order_relaxed);
}

ImageRef LoaderCore::decode(FileUrl const& url, int maxPixel, EmbeddedPreviews previews) const
{
    auto picture = services_.decoder.decode({ url, maxPixel, previews });
    if (!picture || picture->bitmap.isEmpty())
        return nullptr;
    return std::make_shared<CGImageBox const>(
        CGImageBox { std::move(picture->bitmap), picture->origin, picture->bytesRead });
}

ImageRef LoaderCore::decodeFull(FileUrl const& url) const
{
    return decode(url, everyPixel, EmbeddedPreviews::ignore);
}

std::optional<ImageMeta> LoaderCore::readMeta(FileUrl const& url) const
{
    return services_.decoder.readMeta(url);
}

ImageRef LoaderCore::findThumbnail(FileUrl const& url, int maxPixel)
{
    return thumbCache_.find(imageKey(maxPixel, url));
}

ImageRef LoaderCore::makeThumbnail(FileUrl const& url, int maxPixel)
{
    auto image = decode(url, maxPixel, EmbeddedPreviews::prefer);
    if (image)
        thumbCache_.store(imageKey(maxPixel, url), image, image->image.cost());
    return image;
}

ImageRef LoaderCore::findOrMakeThumbnail(FileUrl const& url, int maxPixel)
{
    auto known = findThumbnail(url, maxPixel);
    return known ? known : makeThumbnail(url, maxPixel);
}

std::optional<Glance> LoaderCore::glance(FileUrl const& url, int maxPixel)
{
    auto glance = services_.decoder.glance(url, maxPixel);
    if (glance)
        keepMeta(url, glance->meta);
    return glance;
}

ImageRef LoaderCore::findDisplayImage(FileUrl const& url)
{
    return displayCache_.find(imageKey(displayPixelSize, url));
}

ImageRef LoaderCore::makeDisplayImage(FileUrl const& url, int pixels)
{
    auto image = decode(url, pixels, EmbeddedPreviews::ignore);
    if (image && services_.displayImageMade)
        services_.displayImageMade(image);
    if (image)
        displayCache_.store(imageKey(pixels, url), image, image->image.cost());
    return image;
}

ImageRef LoaderCore::pictureFor(PictureJobs::Job const& job)
{
    if (job.size == PictureSize::full)
        return decodeFull(job.url);
    if (auto known = displayCache_.find(imageKey(job.pixels, job.url)))
        return known;
    return makeDisplayImage(job.url, job.pixels);
}

std::optional<ImageMeta> LoaderCore::findMeta(FileUrl const& url)
{
    auto const box = metaCache_.find(url);
    return box ? std::optional(box->meta) : std::nullopt;
}

std::optional<ImageMeta> LoaderCore::findOrReadMeta(FileUrl const& url)
{
    if (auto known = findMeta(url))
        return known;
    auto const meta = readMeta(url);
    if (meta)
        keepMeta(url, *meta);
    return meta;
}

// A key of its own: the one asked with may hold the names of a whole folder in memory.
void LoaderCore::keepMeta(FileUrl const& url, ImageMeta const& meta)
{
    metaCache_.store(
        FileUrl(url.path()), std::make_shared<ImageMetaBox const>(ImageMetaBox { meta }));
}

} // namespace pixelhain
