#include "viewer/ViewerSource.h"
#include "ports/Background.h"
#include <utility>

namespace pixelhain {

Task LoaderPictures::loadDisplayImage(FileUrl const& url, ImageLoader::ImageDone done)
{
    return loader_.loadDisplayImage(url, std::move(done));
}

Task LoaderPictures::loadFullImage(FileUrl const& url, ImageLoader::ImageDone done)
{
    return loader_.loadFullImage(url, std::move(done));
}

Task LoaderPictures::loadMeta(FileUrl const& url, ImageLoader::MetaDone done)
{
    return runThen(
        background_, loop_, Priority::userInitiated,
        [&loader = loader_, url] { return loader.cachedMeta(url); }, std::move(done));
}

Task LoaderPictures::loadPreview(FileUrl const& url, ImageLoader::ImageDone done)
{
    return runThen(
        background_, loop_, Priority::userInitiated,
        [&loader = loader_, url] {
            return loader.decodeImage(url, loader.displayPixelSize(), EmbeddedPreviews::only);
        },
        std::move(done));
}

ImageRef LoaderPictures::cachedThumbnail(FileUrl const& url) const
{
    return loader_.largestCachedThumbnail(url);
}

int LoaderPictures::displayPixelSize() const
{
    return loader_.displayPixelSize();
}

ImageRef LoaderPictures::cachedDisplayImage(FileUrl const& url) const
{
    return loader_.cachedDisplayImage(url);
}

std::optional<ImageMeta> LoaderPictures::knownMeta(FileUrl const& url) const
{
    return loader_.knownMeta(url);
}

} // namespace pixelhain
