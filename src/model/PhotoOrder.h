#pragma once
#include "model/SortKey.h"
#include <string_view>

namespace pixelhain {

class TextOrder;
struct PhotoItem;

/// Whether `a` comes before `b`. Equal dates or sizes are ordered by name; descending turns that
/// round too. Photos whose names are equivalent as well come in no order of their own.
bool photoOrder(PhotoItem const& a, PhotoItem const& b, SortKey sortKey, bool ascending,
    TextOrder const& order);

/// Whether the name of `item` contains `searchText`, spaces and tabs at its ends left out, letter
/// case ignored. A text of nothing else matches every photo.
bool matchesFilter(PhotoItem const& item, std::string_view searchText, TextOrder const& order);

} // namespace pixelhain
