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
    auto waiter = std::make_shared<ImageLoader::ImageDone>(std::move(done));
    auto shared = full_.lock();
    if (!shared || shared->url != url) {
        shared = std::make_shared<Shared>();
        shared->url = url;
        full_ = shared;
        shared->load = loader_.loadFullImage(
            url, [this, weak = std::weak_ptr(shared)](ImageRef const& image) {
                auto const answered = weak.lock();
                if (!answered)
                    return;
                if (full_.lock() == answered)
                    full_.reset();
                for (auto const& waiting : std::exchange(answered->waiting, {}))
                    if (auto const alive = waiting.lock())
                        (*alive)(image);
            });
    }
    shared->waiting.push_back(waiter);
    // The decode is given up when the last one who waits for it is gone.
    return Task([shared = std::move(shared), waiter = std::move(waiter)]() mutable {
        waiter.reset();
        shared.reset();
    });
}

Task LoaderPictures::loadMeta(FileUrl const& url, ImageLoader::MetaDone done)
{
    return runThen(
        background_, loop_, Priority::userInitiated,
        [&loader = loader_, url] { return loader.cachedMeta(url); }, std::move(done));
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
