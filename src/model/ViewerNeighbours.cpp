#include "model/ViewerNeighbours.h"

namespace pixelhain {

std::vector<std::size_t> viewerNeighbours(
    std::size_t shown, std::size_t count, ViewerDirection direction)
{
    auto const size = static_cast<std::ptrdiff_t>(count);
    std::ptrdiff_t const ahead = direction == ViewerDirection::forward ? +1 : -1;
    std::vector<std::size_t> neighbours;
    for (auto const offset : { ahead, 2 * ahead, -ahead })
        if (auto const index = static_cast<std::ptrdiff_t>(shown) + offset;
            index >= 0 && index < size)
            neighbours.push_back(static_cast<std::size_t>(index));
    return neighbours;
}

} // namespace pixelhain
