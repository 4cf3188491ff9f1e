#pragma once
#include "images/ImageLoader.h"
#include <optional>

namespace pixelhain {

/// Where the viewer gets its pictures from. Main thread only; answers come later on the main thread
/// unless the task is dropped first.
class ViewerSource {
public:
    virtual ~ViewerSource() = default;
    [[nodiscard]] virtual Task loadDisplayImage(FileUrl const& url, ImageLoader::ImageDone done)
        = 0;
    [[nodiscard]] virtual Task loadFullImage(FileUrl const& url, ImageLoader::ImageDone done) = 0;
    [[nodiscard]] virtual Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) = 0;

    /// The best picture inside the file that takes much less time than its own; null: none.
    [[nodiscard]] virtual Task loadPreview(FileUrl const& url, ImageLoader::ImageDone done) = 0;

    /// What is in memory already.
    [[nodiscard]] virtual ImageRef cachedDisplayImage(FileUrl const& url) const = 0;
    /// The largest of the gallery's.
    [[nodiscard]] virtual ImageRef cachedThumbnail(FileUrl const& url) const = 0;
    [[nodiscard]] virtual std::optional<ImageMeta> knownMeta(FileUrl const& url) const = 0;

    /// The longest side of screen-sized pictures.
    [[nodiscard]] virtual int displayPixelSize() const = 0;
};

/// The image loader as the viewer's source.
class LoaderPictures final : public ViewerSource {
public:
    /// The loader outlives this, but not the work that is asked for.
    explicit LoaderPictures(ImageLoader& loader)
        : loader_(loader)
    {
    }

    Task loadDisplayImage(FileUrl const& url, ImageLoader::ImageDone done) override;
    Task loadFullImage(FileUrl const& url, ImageLoader::ImageDone done) override;
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override;
    Task loadPreview(FileUrl const& url, ImageLoader::ImageDone done) override;
    ImageRef cachedDisplayImage(FileUrl const& url) const override;
    ImageRef cachedThumbnail(FileUrl const& url) const override;
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override;
    int displayPixelSize() const override;

private:
    ImageLoader& loader_;
};

} // namespace pixelhain
