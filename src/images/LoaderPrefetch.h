#pragma once
#include "images/ImageLoader.h"
#include "ports/PicturePrefetch.h"

namespace pixelhain {

/// Prefetching with the image loader.
class LoaderPrefetch final : public PicturePrefetch {
public:
    explicit LoaderPrefetch(ImageLoader& loader)
        : loader_(loader)
    {
    }

    void prefetchDisplay(FileUrl const& shown, std::vector<FileUrl> const& next) override
    {
        loader_.prefetchAround(shown, next);
    }

private:
    ImageLoader& loader_;
};

} // namespace pixelhain
