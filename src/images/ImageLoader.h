#pragma once
#include "base/Bitmap.h"
#include "base/FileUrl.h"
#include "base/Task.h"
#include "images/MemoryCache.h"
#include "ports/ImageDecoder.h"
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace pixelhain {

class Background;
class MainLoop;
class WorkQueue;
struct Screen;

/// One decoded image, shared by caches and views.
struct CGImageBox {
    Bitmap image;
    PixelOrigin origin = PixelOrigin::full;
};
using ImageRef = std::shared_ptr<CGImageBox const>;

/// One file's metadata, as the cache holds it.
struct ImageMetaBox {
    ImageMeta meta;
};

/// The one place where image files are decoded: thumbnails, display images, full images and
/// metadata, off the main thread, into bounded caches. Failures are never cached, so each later
/// request tries the file again.
class ImageLoader {
public:
    struct Services {
        MainLoop& loop;
        Background& background;
        ImageDecoder& decoder;
        WorkQueue& thumbQueue; ///< max(2, processors) side by side
        WorkQueue& displayQueue; ///< 3 side by side, at a higher priority
    };
    using ImageDone = std::function<void(ImageRef)>; ///< null: there is no picture
    using MetaDone = std::function<void(std::optional<ImageMeta>)>;

    explicit ImageLoader(Services const& services);

    /// Asynchronous loads: `done` runs later on the main thread, unless the task is dropped first.
    /// A load dropped before its work item starts never touches the file; one dropped later still
    /// fills the cache.
    [[nodiscard]] Task loadThumbnail(FileUrl const& url, int maxPixel, ImageDone done);
    [[nodiscard]] Task loadMeta(FileUrl const& url, MetaDone done);
    [[nodiscard]] Task loadDisplayImage(FileUrl const& url, ImageDone done);
    [[nodiscard]] Task loadFullImage(FileUrl const& url, ImageDone done);

    /// Plain look-ups: null or nothing when not cached. Any thread.
    [[nodiscard]] ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const;
    [[nodiscard]] std::optional<ImageMeta> knownMeta(FileUrl const& url) const;

    /// The metadata from the cache, else read from the file on the caller's thread.
    [[nodiscard]] std::optional<ImageMeta> cachedMeta(FileUrl const& url);

    /// Puts the display image into its cache unless it is there. For work items of the display
    /// queue: decodes on the caller's thread.
    void prefetchDisplay(FileUrl const& url);

    /// Decodes on the caller's thread, past all caches.
    [[nodiscard]] ImageRef decodeImage(
        FileUrl const& url, int maxPixel, EmbeddedPreviews previews) const;
    [[nodiscard]] std::optional<ImageMeta> readMeta(FileUrl const& url) const;

    /// The longest side in device pixels that display images are decoded to.
    [[nodiscard]] int displayPixelSize() const { return displayPixelSize_; }
    void updateDisplayPixelSize(std::span<Screen const> screens);

private:
    Services services_;
    std::shared_ptr<MemoryCache<std::string, CGImageBox>> thumbCache_;
    std::shared_ptr<MemoryCache<FileUrl, ImageMetaBox>> metaCache_;
    std::shared_ptr<MemoryCache<std::string, CGImageBox>> displayCache_;
    std::atomic<int> displayPixelSize_ { 2880 };
};

} // namespace pixelhain
