#include "model/CommandTargets.h"

namespace pixelhain {

std::vector<FileUrl> CommandTargets::photosNow() const
{
    if (photos.empty() && current)
        return { *current };
    return photos;
}

void CommandTargets::follow(UrlSet const& gone, Successor const& successor)
{
    std::erase_if(photos, [&](FileUrl const& url) { return gone.contains(url); });
    if (current && gone.contains(*current))
        current = successor(*current);
}

} // namespace pixelhain
