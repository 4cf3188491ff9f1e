#pragma once
#include <cstddef>
#include <vector>

namespace pixelhain {

/// How wide the parts of a toolbar are, in points.
struct ToolbarWidths {
    std::vector<int> labelled; ///< of each item in order, with the label beside its symbol
    std::vector<int> bare; ///< the same without labels
    int spacing = 0; ///< between the items
    int rest = 0; ///< all that always stays, with the spaces around it, except the search field
    int searchIdeal = 0;
    int searchMinimum = 0;
    int more = 0; ///< the button that leads to what has no room, with the space before it
};

/// What a toolbar shows in the room that it has.
struct ToolbarPlan {
    bool showsLabels = false;
    std::size_t shown = 0; ///< so many items from the left; the others are behind the button
    int searchWidth = 0;

    bool operator==(ToolbarPlan const&) const = default;
};

/// First the labels give way, all together, then the search field shrinks, then items go from the
/// right. The first item stays. Depends on nothing but lengths, so nothing moves while people work.
[[nodiscard]] ToolbarPlan toolbarPlan(int width, ToolbarWidths const& widths);

} // namespace pixelhain
