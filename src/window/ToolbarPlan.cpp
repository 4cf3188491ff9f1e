#include "window/ToolbarPlan.h"
#include <algorithm>
#include <numeric>

namespace pixelhain {

namespace {

int widthOf(std::vector<int> const& items, std::size_t count, int spacing)
{
    auto const end = items.begin() + static_cast<std::ptrdiff_t>(count);
    return std::accumulate(items.begin(), end, 0)
        + spacing * static_cast<int>(count == 0 ? 0 : count - 1);
}

} // namespace

ToolbarPlan toolbarPlan(int width, ToolbarWidths const& widths)
{
    auto const count = widths.bare.size();
    auto const room = width - widths.rest;
    if (widthOf(widths.labelled, count, widths.spacing) + widths.searchIdeal <= room)
        return { true, count, widths.searchIdeal };
    for (auto shown = count;; --shown) {
        auto const left = room - widthOf(widths.bare, shown, widths.spacing)
            - (shown < count ? widths.more : 0);
        if (left >= widths.searchMinimum || shown <= 1)
            return { false, shown, std::clamp(left, widths.searchMinimum, widths.searchIdeal) };
    }
}

} // namespace pixelhain
