#pragma once
#include "window/ThumbnailSource.h"
#include <deque>
#include <map>
#include <string>
#include <vector>

namespace pixelhain {

/// A source of thumbnails that a test answers.
class FakeThumbnails final : public ThumbnailSource {
public:
    struct Request {
        FileUrl url;
        int maxPixel = 0; ///< 0: metadata
        ImageLoader::ImageDone imageDone;
        ImageLoader::MetaDone metaDone;
        std::shared_ptr<bool> dropped = std::make_shared<bool>(false);
    };

    Task loadThumbnail(FileUrl const& url, int maxPixel, ImageLoader::ImageDone done) override
    {
        return remember({ url, maxPixel, std::move(done), nullptr });
    }
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override
    {
        return remember({ url, 0, nullptr, std::move(done) });
    }
    ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const override
    {
        auto const found = pictures.find({ url, maxPixel });
        return found == pictures.end() ? nullptr : found->second;
    }
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override
    {
        auto const found = metas.find(url);
        return found == metas.end() ? std::nullopt : std::optional(found->second);
    }

    /// Answers a thumbnail request, unless it was dropped; null: there is no picture.
    void answer(std::size_t request, ImageRef image) const
    {
        auto const& asked = requests.at(request);
        if (!*asked.dropped)
            asked.imageDone(std::move(image));
    }
    void answerMeta(std::size_t request, std::optional<ImageMeta> meta) const
    {
        auto const& asked = requests.at(request);
        if (!*asked.dropped)
            asked.metaDone(std::move(meta));
    }

    /// The names of the files whose thumbnails were asked for, in that order.
    std::vector<std::string> thumbnailsAsked() const
    {
        std::vector<std::string> names;
        for (auto const& request : requests)
            if (request.maxPixel > 0)
                names.emplace_back(request.url.name());
        return names;
    }

    /// How many requests are still wanted.
    std::size_t wanted() const
    {
        std::size_t count = 0;
        for (auto const& request : requests)
            count += *request.dropped ? 0 : 1;
        return count;
    }

    std::map<std::pair<FileUrl, int>, ImageRef> pictures; ///< in memory
    std::map<FileUrl, ImageMeta> metas; ///< in memory
    std::deque<Request> requests;

private:
    Task remember(Request request)
    {
        requests.push_back(std::move(request));
        return Task([dropped = requests.back().dropped] { *dropped = true; });
    }
};

/// A picture of this size, its pixels of no matter.
inline ImageRef pictureOf(int width, int height)
{
    return std::make_shared<CGImageBox>(
        CGImageBox { Bitmap::allocate({ width, height }, true), PixelOrigin::full });
}

} // namespace pixelhain
