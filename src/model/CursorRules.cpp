#include "model/CursorRules.h"
#include <algorithm>

namespace pixelhain {

std::size_t movedCursor(std::optional<std::size_t> cursor, std::ptrdiff_t delta, std::size_t count)
{
    auto const size = static_cast<std::ptrdiff_t>(count);
    auto const last = size - 1;
    auto target = delta < 0 ? size + delta : delta - 1;
    if (cursor) {
        auto const start = std::min(static_cast<std::ptrdiff_t>(*cursor), last);
        target = start + delta;
        if (target < 0 || target > last)
            target = start;
    } else if (target < 0) {
        target = last;
    }
    return static_cast<std::size_t>(std::clamp(target, std::ptrdiff_t { 0 }, last));
}

std::optional<std::size_t> survivor(std::optional<std::size_t> index, std::vector<bool> const& gone)
{
    if (!index || *index >= gone.size())
        return std::nullopt;
    for (auto next = *index; next < gone.size(); ++next)
        if (!gone[next])
            return next;
    for (auto before = *index; before > 0; --before)
        if (!gone[before - 1])
            return before - 1;
    return std::nullopt;
}

std::size_t indexAfterRemoval(std::size_t index, std::vector<bool> const& gone)
{
    auto const before = gone.begin() + static_cast<std::ptrdiff_t>(index);
    return static_cast<std::size_t>(std::count(gone.begin(), before, false));
}

} // namespace pixelhain
