#include "model/PhotoOrder.h"
#include "base/Text.h"
#include "ports/TextOrder.h"
#include <algorithm>

namespace pixelhain {

bool photoOrder(
    PhotoItem const& a, PhotoItem const& b, SortKey sortKey, bool ascending, TextOrder const& order)
{
    if (!ascending)
        return photoOrder(b, a, sortKey, true, order);
    if (sortKey == SortKey::date && a.date != b.date)
        return a.date < b.date;
    if (sortKey == SortKey::size && a.size != b.size)
        return a.size < b.size;
    return order.compare(a.name(), b.name()) < 0;
}

std::optional<std::size_t> placeInOrder(std::span<PhotoItem const> items, PhotoItem const& photo,
    ViewChoice const& choice, TextOrder const& order)
{
    auto const ascends = [&](PhotoItem const& a, PhotoItem const& b) {
        if (photoOrder(a, b, choice.sortKey, true, order))
            return true;
        return !photoOrder(b, a, choice.sortKey, true, order) && a.url < b.url;
    };
    auto const found
        = std::ranges::lower_bound(items, photo, [&](PhotoItem const& a, PhotoItem const& b) {
              return choice.ascending ? ascends(a, b) : ascends(b, a);
          });
    if (found == items.end() || found->url != photo.url)
        return std::nullopt;
    return static_cast<std::size_t>(found - items.begin());
}

bool matchesFilter(PhotoItem const& item, std::string_view searchText, TextOrder const& order)
{
    auto const wanted = trimmedBlanks(searchText);
    return wanted.empty()
        || order.folded(item.name()).find(order.folded(wanted)) != std::string::npos;
}

} // namespace pixelhain
