#pragma once
#include "viewer/ViewerSource.h"
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pixelhain {

/// A source of the viewer's pictures that a test answers.
class FakeViewerSource final : public ViewerSource {
public:
    FakeViewerSource();
    ~FakeViewerSource() override;

    enum class Kind { display, full, meta, preview };

    struct Request {
        Kind kind = Kind::display;
        FileUrl url;
        ImageLoader::ImageDone imageDone;
        ImageLoader::MetaDone metaDone;
        std::shared_ptr<bool> dropped = std::make_shared<bool>(false);
    };

    Task loadDisplayImage(FileUrl const& url, ImageLoader::ImageDone done) override;
    Task loadFullImage(FileUrl const& url, ImageLoader::ImageDone done) override;
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override;
    Task loadPreview(FileUrl const& url, ImageLoader::ImageDone done) override;
    ImageRef cachedDisplayImage(FileUrl const& url) const override;
    ImageRef cachedThumbnail(FileUrl const& url) const override;
    int displayPixelSize() const override { return longestSide; }
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override;

    /// Answers every request of this kind that is still wanted; null: there is no picture.
    void answer(Kind kind, ImageRef const& image);
    void answerMeta(std::optional<ImageMeta> const& meta);

    /// The names of the files that were asked for and are still wanted.
    std::vector<std::string> wanted(Kind kind) const;
    std::size_t asked(Kind kind) const;

    std::map<FileUrl, ImageRef> pictures; ///< in memory
    std::map<FileUrl, ImageRef> thumbnails; ///< in memory
    std::map<FileUrl, ImageMeta> metas; ///< in memory
    int longestSide = 1920;

private:
    Task remember(Request request);

    std::deque<Request> requests_;
    std::map<Kind, std::size_t> counts_;
};

} // namespace pixelhain
