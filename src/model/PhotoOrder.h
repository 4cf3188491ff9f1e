#pragma once
#include "model/PhotoItem.h"
#include "model/ViewChoice.h"
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace pixelhain {

class TextOrder;

/// Whether `a` comes before `b`. Equal dates or sizes are ordered by name; descending turns that
/// round too. Photos whose names are equivalent as well come in no order of their own.
bool photoOrder(PhotoItem const& a, PhotoItem const& b, SortKey sortKey, bool ascending,
    TextOrder const& order);

/// Where `photo` stands in a list that is in the order of `choice`, equivalent names by their
/// paths; nothing if no photo of its place, date and size is in it. Looks at few of the photos.
[[nodiscard]] std::optional<std::size_t> placeInOrder(std::span<PhotoItem const> items,
    PhotoItem const& photo, ViewChoice const& choice, TextOrder const& order);

/// Whether the name of `item` contains `searchText`, spaces and tabs at its ends left out, letter
/// case ignored. A text of nothing else matches every photo.
bool matchesFilter(PhotoItem const& item, std::string_view searchText, TextOrder const& order);

} // namespace pixelhain
