#include "model/SlideshowRules.h"
#include "model/SelectionRules.h"
#include "ports/RandomSource.h"
#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <utility>

namespace pixelhain {

namespace {

// The port in the shape that the standard library's shuffle wants.
struct RandomBits {
    using result_type = std::uint64_t;
    static constexpr result_type min() { return 0; }
    static constexpr result_type max() { return std::numeric_limits<result_type>::max(); }
    result_type operator()() const { return source.next(); }

    RandomSource& source;
};

} // namespace

std::vector<std::size_t> slideshowOrder(UrlSet const& selection, std::span<PhotoItem const> items)
{
    std::vector<std::size_t> order;
    if (selection.size() >= 2) {
        auto const isMarked = membership(selection, items);
        for (std::size_t i = 0; i < items.size(); ++i)
            if (isMarked[i])
                order.push_back(i);
    }
    if (order.empty()) {
        order.resize(items.size());
        std::iota(order.begin(), order.end(), std::size_t { 0 });
    }
    return order;
}

void shuffle(std::vector<std::size_t>& order, RandomSource& random)
{
    std::ranges::shuffle(order, RandomBits { random });
}

std::optional<std::size_t> positionOf(std::size_t photo, std::span<std::size_t const> order)
{
    auto const found = std::ranges::find(order, photo);
    if (found == order.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - order.begin());
}

std::size_t wrapped(std::size_t position, std::ptrdiff_t delta, std::size_t count)
{
    auto const round = static_cast<std::ptrdiff_t>(count);
    auto const target = static_cast<std::ptrdiff_t>(position) + delta % round;
    return static_cast<std::size_t>((target + round) % round);
}

std::vector<std::size_t> photosAfter(
    std::size_t position, std::span<std::size_t const> order, std::size_t count)
{
    std::vector<std::size_t> photos;
    for (std::ptrdiff_t const offset : { 1, 2 })
        if (auto const photo = order[wrapped(position, offset, order.size())]; photo < count)
            photos.push_back(photo);
    return photos;
}

} // namespace pixelhain
