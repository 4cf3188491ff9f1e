#pragma once
#include "images/ImageLoader.h"

namespace pixelhain {

/// Where the gallery's cells get their pictures from. Main thread only; answers come later on the
/// main thread unless the task is dropped first.
class ThumbnailSource {
public:
    virtual ~ThumbnailSource() = default;
    /// Unless `looked` is empty, it is called first with what a look into the file yields; not for
    /// a thumbnail that is in memory by then.
    [[nodiscard]] virtual Task loadThumbnail(FileUrl const& url, int maxPixel, Turn const& turn,
        ImageLoader::LookDone looked, ImageLoader::ImageDone done)
        = 0;
    /// To be called after turns were changed that were handed in.
    virtual void turnsChanged() = 0;
    [[nodiscard]] virtual Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) = 0;

    /// What is in memory already.
    [[nodiscard]] virtual ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const = 0;
    [[nodiscard]] virtual ImageRef cachedThumbnailOfAnySize(FileUrl const& url) const = 0;
    [[nodiscard]] virtual std::optional<ImageMeta> knownMeta(FileUrl const& url) const = 0;
};

/// The image loader as the cells' source.
class LoaderThumbnails final : public ThumbnailSource {
public:
    explicit LoaderThumbnails(ImageLoader& loader)
        : loader_(loader)
    {
    }

    Task loadThumbnail(FileUrl const& url, int maxPixel, Turn const& turn,
        ImageLoader::LookDone looked, ImageLoader::ImageDone done) override
    {
        return loader_.loadThumbnail(url, maxPixel, turn, std::move(looked), std::move(done));
    }
    void turnsChanged() override { loader_.turnsChanged(); }
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override
    {
        return loader_.loadMeta(url, std::move(done));
    }
    ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const override
    {
        return loader_.cachedThumbnail(url, maxPixel);
    }
    ImageRef cachedThumbnailOfAnySize(FileUrl const& url) const override
    {
        return loader_.largestCachedThumbnail(url);
    }
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override
    {
        return loader_.knownMeta(url);
    }

private:
    ImageLoader& loader_;
};

} // namespace pixelhain
