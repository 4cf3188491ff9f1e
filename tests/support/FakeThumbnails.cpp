#include "support/FakeThumbnails.h"

namespace pixelhain {

FakeThumbnails::FakeThumbnails() = default;
FakeThumbnails::~FakeThumbnails() = default;

Task FakeThumbnails::loadThumbnail(FileUrl const& url, int maxPixel, Turn const& turn,
    ImageLoader::LookDone looked, ImageLoader::ImageDone done)
{
    return remember({ url, maxPixel, std::move(done), nullptr, std::move(looked), turn });
}

Task FakeThumbnails::loadMeta(FileUrl const& url, ImageLoader::MetaDone done)
{
    return remember({ url, 0, nullptr, std::move(done), nullptr, {} });
}

ImageRef FakeThumbnails::cachedThumbnail(FileUrl const& url, int maxPixel) const
{
    auto const found = pictures.find({ url, maxPixel });
    return found == pictures.end() ? nullptr : found->second;
}

ImageRef FakeThumbnails::cachedThumbnailOfAnySize(FileUrl const& url) const
{
    ImageRef largest;
    for (auto const& [key, picture] : pictures) // of a photo in the order of their sizes
        if (key.first == url)
            largest = picture;
    return largest;
}

std::optional<ImageMeta> FakeThumbnails::knownMeta(FileUrl const& url) const
{
    auto const found = metas.find(url);
    return found == metas.end() ? std::nullopt : std::optional(found->second);
}

void FakeThumbnails::answer(std::size_t request, ImageRef image) const
{
    auto const& asked = requests.at(request);
    if (!*asked.dropped)
        asked.imageDone(std::move(image));
}

void FakeThumbnails::answerLook(std::size_t request, FirstLook const& look) const
{
    auto const& asked = requests.at(request);
    if (!*asked.dropped && asked.looked)
        asked.looked(look);
}

void FakeThumbnails::answerMeta(std::size_t request, std::optional<ImageMeta> meta) const
{
    auto const& asked = requests.at(request);
    if (!*asked.dropped)
        asked.metaDone(std::move(meta));
}

std::vector<std::string> FakeThumbnails::thumbnailsAsked() const
{
    std::vector<std::string> names;
    for (auto const& request : requests)
        if (request.maxPixel > 0)
            names.emplace_back(request.url.name());
    return names;
}

std::size_t FakeThumbnails::wanted() const
{
    std::size_t count = 0;
    for (auto const& request : requests)
        count += *request.dropped ? 0 : 1;
    return count;
}

Task FakeThumbnails::remember(Request request)
{
    requests.push_back(std::move(request));
    return Task([dropped = requests.back().dropped] { *dropped = true; });
}

} // namespace pixelhain
