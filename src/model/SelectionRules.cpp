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
