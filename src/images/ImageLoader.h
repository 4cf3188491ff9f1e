#pragma once
#include "base/Bitmap.h"
#include "base/FileUrl.h"
#include "base/Task.h"
#include "images/DisplayPixelSize.h"
#include "images/MemoryCache.h"
#include "images/PagingPace.h"
#include "images/PictureJobs.h"
#include "images/Turn.h"
#include "ports/ImageDecoder.h"
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace pixelhain {

class Background;
class LoaderCore;
class MainLoop;
class WorkQueue;

/// One decoded image, shared by caches and views.
struct CGImageBox {
    Bitmap image;
    PixelOrigin origin = PixelOrigin::full;
    std::uint64_t bytesRead = 0; ///< of the file
};
using ImageRef = std::shared_ptr<CGImageBox const>;

/// One file's metadata, as the cache holds it.
struct ImageMetaBox {
    ImageMeta meta;
};

/// What is known of a photo before its thumbnail is made.
struct FirstLook {
    std::optional<ImageMeta> meta;
    ImageRef embedded; ///< a small picture of it; null if there is none
    std::uint64_t bytesRead = 0; ///< of the file
};

/// The one place where image files are decoded: thumbnails, display images, full images and
/// metadata, off the main thread, into bounded caches. Failures are never cached, so each later
/// request tries the file again. Two requests for the same thumbnail may both decode it; the later
/// one stays in the cache. Display and full images are decoded once for all who wait for them, the
/// newest wish first.
class ImageLoader {
public:
    /// The loop and the decoder must outlive the threads of the other three. The queues may go once
    /// either the loader or the background's threads are gone; whatever is under way then ends
    /// without touching them.
    struct Services {
        MainLoop& loop;
        Background& background;
        ImageDecoder& decoder;
        WorkQueue& thumbQueue; ///< max(2, processors) side by side
        WorkQueue& displayQueue; ///< `Limits::pictures.queue` side by side, at a higher priority
        /// Called with each display image that was decoded, on the thread that did it, before
        /// anyone gets it. It must outlive that thread.
        std::function<void(std::shared_ptr<CGImageBox const> const&)> displayImageMade {};
    };
    struct Limits {
        CacheLimits thumbs { 734'003'200, std::nullopt }; // 700 MiB
        CacheLimits displays { 943'718'400, 30 }; // 900 MiB
        int displayPixelSize = defaultDisplayPixelSize; ///< until the screens are known
        PictureJobs::Widths pictures {}; ///< side by side on the display queue
    };
    using ImageDone = std::function<void(ImageRef)>; ///< null: there is no picture
    using MetaDone = std::function<void(std::optional<ImageMeta>)>;
    using LookDone = std::function<void(FirstLook const&)>;

    explicit ImageLoader(Services const& services);
    ImageLoader(Services const& services, Limits const& limits);
    ImageLoader(ImageLoader const&) = delete;
    ImageLoader& operator=(ImageLoader const&) = delete;
    ~ImageLoader();

    /// Asynchronous loads, asked for and dropped on the main thread: `done` runs there later,
    /// unless the task is dropped first, which also frees `done`. A load dropped before its work
    /// item starts never touches the file; one dropped later still fills the cache.
    [[nodiscard]] Task loadThumbnail(FileUrl const& url, int maxPixel, ImageDone done);
    [[nodiscard]] Task loadMeta(FileUrl const& url, MetaDone done);
    /// The thumbnail when its turn comes. Unless `looked` is empty, the file is looked into first,
    /// as long before as it takes to look into all others of its kind, and `looked` is called
    /// before `done`; its metadata is kept, its picture is not. A thumbnail that is cached comes
    /// without.
    [[nodiscard]] Task loadThumbnail(
        FileUrl const& url, int maxPixel, Turn const& turn, LookDone looked, ImageDone done);
    /// To be called after turns were changed that loads were asked for with.
    void turnsChanged();
    [[nodiscard]] Task loadDisplayImage(FileUrl const& url, ImageDone done);
    [[nodiscard]] Task loadFullImage(FileUrl const& url, ImageDone done);

    /// Past the queues, which may be long, on a thread of the background of its own.
    [[nodiscard]] Task loadMetaNow(FileUrl const& url, MetaDone done);
    /// The best picture inside the file that takes much less time than its own; null: none.
    [[nodiscard]] Task loadPreviewNow(FileUrl const& url, ImageDone done);

    /// Plain look-ups: null or nothing when not cached. Any thread.
    [[nodiscard]] ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const;
    /// The largest thumbnail of the gallery's sizes.
    [[nodiscard]] ImageRef largestCachedThumbnail(FileUrl const& url) const;
    [[nodiscard]] ImageRef cachedDisplayImage(FileUrl const& url) const;
    [[nodiscard]] std::optional<ImageMeta> knownMeta(FileUrl const& url) const;

    /// The metadata from the cache, else read from the file on the caller's thread.
    [[nodiscard]] std::optional<ImageMeta> cachedMeta(FileUrl const& url);

    /// Puts the display image into its cache unless it is there. For work items of the display
    /// queue: decodes on the caller's thread. Such items must not outlive the loader.
    void prefetchDisplay(FileUrl const& url);

    /// Makes the display image of `shown`, and when all that somebody waits for has begun those of
    /// `next` in this order. Replaces the earlier wishes: what has not begun and is not named again
    /// is given up. Where somebody pages faster than large pictures are decoded none is begun, but
    /// thumbnails of what comes next. Main thread only.
    void prefetchAround(FileUrl const& shown, std::span<FileUrl const> next);

    /// Decodes on the caller's thread, past all caches.
    [[nodiscard]] ImageRef decodeImage(
        FileUrl const& url, int maxPixel, EmbeddedPreviews previews) const;
    /// The same with previews preferred, for whoever takes a small JPEG as gladly as pixels.
    [[nodiscard]] std::optional<DecodedPicture> decodeOrPass(
        FileUrl const& url, int maxPixel) const;
    [[nodiscard]] std::optional<ImageMeta> readMeta(FileUrl const& url) const;

    /// The longest side in device pixels that display images are decoded to.
    [[nodiscard]] int displayPixelSize() const;
    void updateDisplayPixelSize(std::span<Screen const> screens);

private:
    /// A thumbnail that is made for somebody in a hurry.
    struct Coarse {
        FileUrl url;
        Task load;
    };

    void makeCoarse(std::span<FileUrl const> next);

    Services services_;
    std::shared_ptr<LoaderCore> core_; // shared with the work under way
    PagingPace pace_;
    std::vector<Coarse> coarse_; ///< under way
};

} // namespace pixelhain
