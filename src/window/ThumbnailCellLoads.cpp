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
        embedded_ = nullptr;
        failed_ = false;
        metaTask_ = Task();
        meta_ = source_.knownMeta(url_);
        hasLooked_ = meta_.has_value();
        bytesLooked_ = 0;
    }
    loadThumbnail();
}

// A look into the file tells the metadata as well, so that is asked for by itself only where there
// is no need to look.
void ThumbnailCellLoads::loadThumbnail()
{
    thumbnailTask_ = Task();
    isSettled_ = false;
    // Taken from memory in the same frame, so that a cell scrolled back into view never blinks.
    if (auto cached = source_.cachedThumbnail(url_, pixel_)) {
        use(std::move(cached));
        loadMeta();
        return;
    }
    // One of another size stands for it meanwhile: sizes change more often than photos are made.
    // Of what was never looked into there is hardly ever one.
    if (!image_ && !embedded_ && !failed_ && hasLooked_)
        embedded_ = source_.cachedThumbnailOfAnySize(url_);
    bool const hasNothing = !image_ && !embedded_ && !failed_;
    ImageLoader::LookDone look;
    if (hasNothing || !hasLooked_)
        look = [this](FirstLook const& found) { looked(found); };
    thumbnailTask_ = source_.loadThumbnail(url_, pixel_, turn_, std::move(look),
        [this](ImageRef image) { thumbnailArrived(std::move(image)); });
}

void ThumbnailCellLoads::use(ImageRef image)
{
    image_ = std::move(image);
    embedded_ = nullptr;
    failed_ = false;
    isSettled_ = true;
}

void ThumbnailCellLoads::looked(FirstLook const& look)
{
    hasLooked_ = true;
    bytesLooked_ += look.bytesRead;
    if (look.meta)
        meta_ = look.meta;
    if (!image_ && !failed_)
        embedded_ = look.embedded;
    tellChanged();
}

void ThumbnailCellLoads::thumbnailArrived(ImageRef image)
{
    if (image)
        use(std::move(image));
    embedded_ = nullptr;
    isSettled_ = true;
    failed_ = !image_;
    loadMeta();
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
    if (hasLooked_)
        return;
    hasLooked_ = true;
    metaTask_ = source_.loadMeta(url_, [this](std::optional<ImageMeta> meta) {
        meta_ = std::move(meta);
        tellChanged();
    });
}

} // namespace pixelhain
