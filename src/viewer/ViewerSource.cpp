#include "viewer/ViewerSource.h"
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
    return loader_.loadMetaNow(url, std::move(done));
}

Task LoaderPictures::loadPreview(FileUrl const& url, ImageLoader::ImageDone done)
{
    return loader_.loadPreviewNow(url, std::move(done));
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
