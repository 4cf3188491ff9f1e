#include "model/PhotoList.h"
#include "base/Text.h"

namespace pixelhain {

std::vector<PhotoItem> PhotoList::visible(ViewChoice const& choice, TextOrder const& order)
{
    if (!trimmedBlanks(choice.searchText).empty())
        foldNames(order);
    return index_.visible(items_, order, choice.searchText, choice.sortKey, choice.ascending);
}

void PhotoList::foldNames(TextOrder const& order)
{
    std::scoped_lock const guard(folding_);
    index_.foldNames(items_, order);
}

} // namespace pixelhain
