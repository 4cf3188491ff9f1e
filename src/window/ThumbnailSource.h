#pragma once
#include "images/ImageLoader.h"

namespace pixelhain {

/// Where the gallery's cells get their pictures from. Main thread only; answers come later on the
/// main thread unless the task is dropped first.
class ThumbnailSource {
public:
    virtual ~ThumbnailSource() = default;
    [[nodiscard]] virtual Task loadThumbnail(
        FileUrl const& url, int maxPixel, ImageLoader::ImageDone done)
        = 0;
    [[nodiscard]] virtual Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) = 0;

    /// What is in memory already.
    [[nodiscard]] virtual ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const = 0;
    [[nodiscard]] virtual std::optional<ImageMeta> knownMeta(FileUrl const& url) const = 0;
};

/// The image loader as the cells' source.
class LoaderThumbnails final : public ThumbnailSource {
public:
    explicit LoaderThumbnails(ImageLoader& loader)
        : loader_(loader)
    {
    }

    Task loadThumbnail(FileUrl const& url, int maxPixel, ImageLoader::ImageDone done) override
    {
        return loader_.loadThumbnail(url, maxPixel, std::move(done));
    }
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override
    {
        return loader_.loadMeta(url, std::move(done));
    }
    ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const override
    {
        return loader_.cachedThumbnail(url, maxPixel);
    }
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override
    {
        return loader_.knownMeta(url);
    }

private:
    ImageLoader& loader_;
};

} // namespace pixelhain
