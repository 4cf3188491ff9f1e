#pragma once
#include "viewer/ViewerSource.h"
#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// A source of the viewer's pictures that a test answers.
class FakeViewerSource final : public ViewerSource {
public:
    enum class Kind { display, full, meta };

    struct Request {
        Kind kind = Kind::display;
        FileUrl url;
        ImageLoader::ImageDone imageDone;
        ImageLoader::MetaDone metaDone;
        std::shared_ptr<bool> dropped = std::make_shared<bool>(false);
    };

    Task loadDisplayImage(FileUrl const& url, ImageLoader::ImageDone done) override
    {
        return remember({ Kind::display, url, std::move(done), nullptr });
    }
    Task loadFullImage(FileUrl const& url, ImageLoader::ImageDone done) override
    {
        return remember({ Kind::full, url, std::move(done), nullptr });
    }
    Task loadMeta(FileUrl const& url, ImageLoader::MetaDone done) override
    {
        return remember({ Kind::meta, url, nullptr, std::move(done) });
    }
    ImageRef cachedDisplayImage(FileUrl const& url) const override
    {
        auto const found = pictures.find(url);
        return found == pictures.end() ? nullptr : found->second;
    }
    std::optional<ImageMeta> knownMeta(FileUrl const& url) const override
    {
        auto const found = metas.find(url);
        return found == metas.end() ? std::nullopt : std::optional(found->second);
    }

    /// Answers every request of this kind that is still wanted; null: there is no picture.
    void answer(Kind kind, ImageRef const& image)
    {
        for (auto const& request : std::exchange(requests_, {}))
            if (request.kind != kind)
                requests_.push_back(request);
            else if (!*request.dropped)
                request.imageDone(image);
    }
    void answerMeta(std::optional<ImageMeta> const& meta)
    {
        for (auto const& request : std::exchange(requests_, {}))
            if (request.kind != Kind::meta)
                requests_.push_back(request);
            else if (!*request.dropped)
                request.metaDone(meta);
    }

    /// The names of the files that were asked for and are still wanted.
    std::vector<std::string> wanted(Kind kind) const
    {
        std::vector<std::string> names;
        for (auto const& request : requests_)
            if (request.kind == kind && !*request.dropped)
                names.emplace_back(request.url.name());
        return names;
    }
    std::size_t asked(Kind kind) const
    {
        auto const count = counts_.find(kind);
        return count == counts_.end() ? 0 : count->second;
    }

    std::map<FileUrl, ImageRef> pictures; ///< in memory
    std::map<FileUrl, ImageMeta> metas; ///< in memory

private:
    Task remember(Request request)
    {
        ++counts_[request.kind];
        requests_.push_back(std::move(request));
        return Task([dropped = requests_.back().dropped] { *dropped = true; });
    }

    std::deque<Request> requests_;
    std::map<Kind, std::size_t> counts_;
};

} // namespace pixelhain
