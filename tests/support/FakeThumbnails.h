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
    FakeThumbnails();
    ~FakeThumbnails() override;

    struct Request {
        FileUrl url;
        int maxPixel = 0; ///< 0: metadata
        ImageLoader::ImageDone imageDone;
        ImageLoader::MetaDone metaDone;
        ImageLoader::LookDone looked; ///< empty where no look was asked for
        Turn turn;
        std::shared_ptr<bool> dropped = std::make_shared<bool>(false);
    };

    Task loadThumbnail(FileUrl const& url, int maxPixel, Turn const& turn,
        ImageLoader::LookDone looked, ImageLoader::ImageDone done) override;
    void turnsChanged() override { ++turnChanges; }
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override;
    ImageRef cachedThumbnail(FileUrl const& url, int maxPixel) const override;
    ImageRef cachedThumbnailOfAnySize(FileUrl const& url) const override;
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override;

    /// Answers a thumbnail request, unless it was dropped; null: there is no picture.
    void answer(std::size_t request, ImageRef image) const;
    /// What a look into the file of a thumbnail request yields, unless that was dropped.
    void answerLook(std::size_t request, FirstLook const& look) const;
    void answerMeta(std::size_t request, std::optional<ImageMeta> meta) const;

    /// The names of the files whose thumbnails were asked for, in that order.
    std::vector<std::string> thumbnailsAsked() const;

    /// How many requests are still wanted.
    std::size_t wanted() const;

    std::map<std::pair<FileUrl, int>, ImageRef> pictures; ///< in memory
    std::map<FileUrl, ImageMeta> metas; ///< in memory
    std::deque<Request> requests;
    int turnChanges = 0;

private:
    Task remember(Request request);
};

/// A picture of this size, its pixels of no matter.
inline ImageRef pictureOf(int width, int height)
{
    return std::make_shared<CGImageBox>(
        CGImageBox { Bitmap::allocate({ width, height }, true), PixelOrigin::full });
}

} // namespace pixelhain
