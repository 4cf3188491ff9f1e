#include "support/FakeViewerSource.h"
#include <utility>

namespace pixelhain {

FakeViewerSource::FakeViewerSource() = default;
FakeViewerSource::~FakeViewerSource() = default;

Task FakeViewerSource::loadDisplayImage(FileUrl const& url, ImageLoader::ImageDone done)
{
    return remember({ Kind::display, url, std::move(done), nullptr });
}

Task FakeViewerSource::loadFullImage(FileUrl const& url, ImageLoader::ImageDone done)
{
    return remember({ Kind::full, url, std::move(done), nullptr });
}

Task FakeViewerSource::loadMeta(FileUrl const& url, ImageLoader::MetaDone done)
{
    return remember({ Kind::meta, url, nullptr, std::move(done) });
}

Task FakeViewerSource::loadPreview(FileUrl const& url, ImageLoader::ImageDone done)
{
    return remember({ Kind::preview, url, std::move(done), nullptr });
}

ImageRef FakeViewerSource::cachedThumbnail(FileUrl const& url) const
{
    auto const found = thumbnails.find(url);
    return found == thumbnails.end() ? nullptr : found->second;
}

ImageRef FakeViewerSource::cachedDisplayImage(FileUrl const& url) const
{
    auto const found = pictures.find(url);
    return found == pictures.end() ? nullptr : found->second;
}

std::optional<ImageMeta> FakeViewerSource::knownMeta(FileUrl const& url) const
{
    auto const found = metas.find(url);
    return found == metas.end() ? std::nullopt : std::optional(found->second);
}

void FakeViewerSource::answer(Kind kind, ImageRef const& image)
{
    for (auto const& request : std::exchange(requests_, {}))
        if (request.kind != kind)
            requests_.push_back(request);
        else if (!*request.dropped)
            request.imageDone(image);
}

void FakeViewerSource::answerMeta(std::optional<ImageMeta> const& meta)
{
    for (auto const& request : std::exchange(requests_, {}))
        if (request.kind != Kind::meta)
            requests_.push_back(request);
        else if (!*request.dropped)
            request.metaDone(meta);
}

std::vector<std::string> FakeViewerSource::wanted(Kind kind) const
{
    std::vector<std::string> names;
    for (auto const& request : requests_)
        if (request.kind == kind && !*request.dropped)
            names.emplace_back(request.url.name());
    return names;
}

std::size_t FakeViewerSource::asked(Kind kind) const
{
    auto const count = counts_.find(kind);
    return count == counts_.end() ? 0 : count->second;
}

Task FakeViewerSource::remember(Request request)
{
    ++counts_[request.kind];
    requests_.push_back(std::move(request));
    return Task([dropped = requests_.back().dropped] { *dropped = true; });
}

} // namespace pixelhain
