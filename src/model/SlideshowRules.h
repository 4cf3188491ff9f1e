#pragma once
#include "model/PhotoItem.h"
#include "model/UrlSet.h"
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace pixelhain {

class RandomSource;

/// What a slideshow of `items` shows, as indices in list order: the marked photos if at least two
/// are marked, else all. If none of the marked ones is among the items, all as well.
[[nodiscard]] std::vector<std::size_t> slideshowOrder(
    UrlSet const& selection, std::span<PhotoItem const> items);

/// Brings the order into one of all its orders, each as likely as the others.
void shuffle(std::vector<std::size_t>& order, RandomSource& random);

/// Where `photo` stands in the order.
[[nodiscard]] std::optional<std::size_t> positionOf(
    std::size_t photo, std::span<std::size_t const> order);

/// The position `delta` further in a round of `count`, at least one.
[[nodiscard]] std::size_t wrapped(std::size_t position, std::ptrdiff_t delta, std::size_t count);

/// The photos that come after `position`, two at most, without what lies outside a list of `count`
/// photos.
[[nodiscard]] std::vector<std::size_t> photosAfter(
    std::size_t position, std::span<std::size_t const> order, std::size_t count);

} // namespace pixelhain
