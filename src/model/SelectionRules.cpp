#include "model/SelectionRules.h"
#include <string_view>
#include <unordered_set>

namespace pixelhain {

std::set<FileUrl> stillPresent(std::set<FileUrl> const& selection, std::span<PhotoItem const> items)
{
    if (selection.empty())
        return {};
    std::unordered_set<std::string_view> marked;
    marked.reserve(selection.size());
    for (auto const& url : selection)
        marked.insert(url.path());
    std::set<FileUrl> present;
    for (auto const& item : items)
        if (marked.contains(item.url.path()))
            present.insert(item.url);
    return present;
}

} // namespace pixelhain
