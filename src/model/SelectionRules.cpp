#include "model/SelectionRules.h"

namespace pixelhain {

UrlSet stillPresent(UrlSet const& selection, std::span<PhotoItem const> items)
{
    if (selection.empty())
        return {};
    UrlSet present;
    for (auto const& item : items)
        if (selection.contains(item.url))
            present.insert(item.url);
    return present;
}

std::vector<FileUrl> markedPhotos(UrlSet const& selection, std::span<PhotoItem const> items)
{
    std::vector<FileUrl> marked;
    if (selection.empty())
        return marked;
    for (auto const& item : items)
        if (selection.contains(item.url))
            marked.push_back(item.url);
    return marked;
}

UrlSet vanishedPhotos(std::span<FileUrl const> urls, std::span<PhotoItem const> before,
    std::span<PhotoItem const> after)
{
    UrlSet absent(urls.begin(), urls.end());
    for (auto const& item : after)
        absent.erase(item.url);
    UrlSet vanished;
    for (auto const& item : before)
        if (absent.contains(item.url))
            vanished.insert(item.url);
    return vanished;
}

UrlSet allPhotos(std::span<PhotoItem const> items)
{
    UrlSet all;
    all.reserve(items.size());
    for (auto const& item : items)
        all.insert(item.url);
    return all;
}

UrlSet invertedSelection(UrlSet const& selection, std::span<PhotoItem const> items)
{
    UrlSet inverted;
    for (auto const& item : items)
        if (!selection.contains(item.url))
            inverted.insert(item.url);
    return inverted;
}

} // namespace pixelhain
