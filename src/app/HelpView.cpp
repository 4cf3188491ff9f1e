#include "app/HelpView.h"
#include "app/HelpTopics.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

HelpView::HelpView(TextOrder const& order)
    : order_(order)
{
    reset();
}

HelpTopic const* HelpView::topic() const
{
    return selection_ ? helpTopic(*selection_) : nullptr;
}

void HelpView::select(std::optional<std::string> id)
{
    selection_ = std::move(id);
}

void HelpView::setQuery(std::string query)
{
    if (query == query_)
        return;
    query_ = std::move(query);
    filtered_ = filteredTopics(query_, order_);
    bool const stays
        = filtered_.empty() || std::ranges::find(filtered_, topic()) != filtered_.end();
    if (!stays)
        selection_ = filtered_.front()->id;
}

void HelpView::reset()
{
    query_.clear();
    filtered_ = filteredTopics(query_, order_);
    selection_ = helpTopics().front().id;
}

} // namespace pixelhain
