#include "model/ViewerNeighbours.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Indices = std::vector<std::size_t>;
constexpr auto forward = ViewerDirection::forward;
constexpr auto backward = ViewerDirection::backward;

} // namespace

TEST_CASE("two photos ahead and one behind are likely to be looked at next")
{
    CHECK(viewerNeighbours(4, 10, forward) == Indices { 5, 6, 3 });
    CHECK(viewerNeighbours(4, 10, backward) == Indices { 3, 2, 5 });
}

TEST_CASE("there are no neighbours beyond the ends of the list")
{
    CHECK(viewerNeighbours(0, 3, forward) == Indices { 1, 2 });
    CHECK(viewerNeighbours(0, 3, backward) == Indices { 1 });
    CHECK(viewerNeighbours(1, 3, backward) == Indices { 0, 2 });
    CHECK(viewerNeighbours(2, 3, forward) == Indices { 1 });
    CHECK(viewerNeighbours(0, 1, forward).empty());
}
