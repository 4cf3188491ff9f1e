#pragma once
#include <cstddef>
#include <vector>

namespace pixelhain {

/// Which way the viewer went through the list.
enum class ViewerDirection { forward, backward };

/// The photos of a list of `count` that are likely to be looked at after the one at `shown`, the
/// likeliest first: two ahead in the direction of travel and one behind.
[[nodiscard]] std::vector<std::size_t> viewerNeighbours(
    std::size_t shown, std::size_t count, ViewerDirection direction);

} // namespace pixelhain
