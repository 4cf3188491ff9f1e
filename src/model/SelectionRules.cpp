#include "model/SelectionRules.h"
#include <unordered_set>

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

// Copies of a URL share their bytes. To compare addresses is to read the list from front to back;
// to compare names is to jump to each of them.
std::vector<bool> membership(UrlSet const& urls, std::span<PhotoItem const> items)
{
    std::vector<bool> isIn(items.size(), false);
    std::unordered_set<char const*> addresses;
    addresses.reserve(urls.size());
    for (auto const& url : urls)
        addresses.insert(url.cString());
    std::size_t found = 0;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (addresses.contains(items[i].url.cString())) {
            isIn[i] = true;
            ++found;
        }
    for (std::size_t i = 0; i < items.size() && found < urls.size(); ++i)
        if (!isIn[i] && urls.contains(items[i].url)) {
            isIn[i] = true;
            ++found;
        }
    return isIn;
}

std::vector<FileUrl> markedPhotos(UrlSet const& selection, std::span<PhotoItem const> items)
{
    auto const isMarked = membership(selection, items);
    std::vector<FileUrl> marked;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (isMarked[i])
            marked.push_back(items[i].url);
    return marked;
}

bool toggleMark(UrlSet& marks, FileUrl const& photo)
{
    return marks.erase(photo) == 0 && marks.insert(photo).second;
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
