#include "window/ThumbnailCellLoads.h"
#include <utility>

namespace pixelhain {

ThumbnailCellLoads::ThumbnailCellLoads(ThumbnailSource& source, std::function<void()> changed)
    : source_(source)
    , changed_(std::move(changed))
{
}

void ThumbnailCellLoads::show(FileUrl const& url, int pixel)
{
    bool const sameUrl = url == url_;
    if (sameUrl && pixel == pixel_)
        return;
    url_ = url;
    pixel_ = pixel;
    if (!sameUrl) {
        image_ = nullptr;
        failed_ = false;
        loadMeta();
    }
    loadThumbnail();
}

void ThumbnailCellLoads::loadThumbnail()
{
    thumbnailTask_ = Task();
    isSettled_ = false;
    // Taken from memory in the same frame, so that a cell scrolled back into view never blinks.
    if (auto cached = source_.cachedThumbnail(url_, pixel_)) {
        image_ = std::move(cached);
        failed_ = false;
        isSettled_ = true;
        return;
    }
    thumbnailTask_ = source_.loadThumbnail(
        url_, pixel_, [this](ImageRef image) { thumbnailArrived(std::move(image)); });
}

void ThumbnailCellLoads::thumbnailArrived(ImageRef image)
{
    isSettled_ = true;
    if (image) {
        image_ = std::move(image);
        failed_ = false;
    } else if (!image_) {
        failed_ = true;
    }
    tellChanged();
}

// Whoever hears of it may drop this cell at once.
void ThumbnailCellLoads::tellChanged() const
{
    auto const changed = changed_;
    changed();
}

void ThumbnailCellLoads::loadMeta()
{
    metaTask_ = Task();
    meta_ = source_.knownMeta(url_);
    if (meta_)
        return;
    metaTask_ = source_.loadMeta(url_, [this](std::optional<ImageMeta> meta) {
        meta_ = std::move(meta);
        tellChanged();
    });
}

} // namespace pixelhain
