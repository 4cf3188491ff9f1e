#pragma once
#include "base/FileUrl.h"
#include "images/ImageLoader.h"
#include "images/MemoryCache.h"
#include "images/PictureJobs.h"
#include "images/ThumbnailJobs.h"
#include "ports/ImageDecoder.h"
#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace pixelhain {

/// The key of an image that was decoded to `pixels`: "512|/Bilder/a.jpg".
[[nodiscard]] std::string imageKey(int pixels, FileUrl const& url);

/// The part of the image loader that its work items share: the caches, and what is done on the
/// threads of the queues. Thread-safe.
class LoaderCore {
public:
    LoaderCore(ImageLoader::Services const& services, ImageLoader::Limits const& limits);

    MainLoop& loop() const { return services_.loop; }
    Background& background() const { return services_.background; }
    WorkQueue& thumbQueue() const { return services_.thumbQueue; }
    WorkQueue& displayQueue() const { return services_.displayQueue; }

    /// Adds an item to one of the loader's queues; does nothing once the loader is closed, because
    /// the queues may be gone then.
    void enqueue(WorkQueue& queue, std::function<void()> item);
    void close();
    bool isClosed() const { return isClosed_.load(std::memory_order_relaxed); }

    ImageRef decode(FileUrl const& url, int maxPixel, EmbeddedPreviews previews) const;
    ImageRef decodeFull(FileUrl const& url) const;
    std::optional<ImageMeta> readMeta(FileUrl const& url) const;

    ImageRef findThumbnail(FileUrl const& url, int maxPixel);
    ImageRef makeThumbnail(FileUrl const& url, int maxPixel);
    ImageRef findOrMakeThumbnail(FileUrl const& url, int maxPixel);
    /// Keeps the metadata that it finds.
    std::optional<Glance> glance(FileUrl const& url, int maxPixel);
    ImageRef findDisplayImage(FileUrl const& url);
    ImageRef makeDisplayImage(FileUrl const& url, int pixels);
    /// What a job is about: from the cache if it is there by now, else decoded.
    ImageRef pictureFor(PictureJobs::Job const& job);
    std::optional<ImageMeta> findMeta(FileUrl const& url);
    std::optional<ImageMeta> findOrReadMeta(FileUrl const& url);

    std::atomic<int> displayPixelSize;
    PictureJobs pictures;
    ThumbnailJobs thumbnails;

private:
    void keepMeta(FileUrl const& url, ImageMeta const& meta);

    ImageLoader::Services services_;
    MemoryCache<std::string, CGImageBox> thumbCache_;
    MemoryCache<FileUrl, ImageMetaBox> metaCache_;
    MemoryCache<std::string, CGImageBox> displayCache_;
    std::mutex gate_;
    std::atomic<bool> isClosed_ = false;
};

} // namespace pixelhain
