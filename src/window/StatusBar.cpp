#include "window/StatusBar.h"
#include "model/BrowserModel.h"
#include "model/Messages.h"

namespace pixelhain {

bool StatusBar::showsActivity() const
{
    return model_.isLoading || model_.isSearching;
}

std::string_view StatusBar::activityName() const
{
    return model_.isLoading ? loadingName : searchingName;
}

std::string StatusBar::countText() const
{
    auto text = messages::photoCount(model_.items->size());
    if (!model_.selection->empty())
        text += " · " + spokenMarks();
    return text;
}

std::string StatusBar::spokenMarks() const
{
    return std::to_string(model_.selection->size()) + " ausgewählt";
}

std::optional<std::string> StatusBar::message() const
{
    return model_.status;
}

std::optional<std::string> StatusBar::progress() const
{
    if (auto const& files = *model_.fileProgress)
        return messages::progress(files->done, files->total);
    if (auto const& pages = *model_.pageProgress)
        return messages::pageProgress(pages->done, pages->total);
    return std::nullopt;
}

bool StatusBar::showsSelectNone() const
{
    return !model_.selection->empty();
}

void StatusBar::selectNone()
{
    model_.selectNone();
}

} // namespace pixelhain
