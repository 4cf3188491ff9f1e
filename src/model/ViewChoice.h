#pragma once
#include "model/SortKey.h"
#include <string>

namespace pixelhain {

/// What decides which photos of a list are visible, and in which order.
struct ViewChoice {
    std::string searchText;
    SortKey sortKey = SortKey::name;
    bool ascending = true;
    bool operator==(ViewChoice const&) const = default;
};

} // namespace pixelhain
