#include "model/PhotoOrder.h"
#include "base/Text.h"
#include "model/PhotoItem.h"
#include "ports/TextOrder.h"

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

bool matchesFilter(PhotoItem const& item, std::string_view searchText, TextOrder const& order)
{
    auto const wanted = trimmedBlanks(searchText);
    return wanted.empty()
        || order.folded(item.name()).find(order.folded(wanted)) != std::string::npos;
}

} // namespace pixelhain
