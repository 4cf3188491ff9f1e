#include "viewer/InfoPanel.h"
#include "ports/Background.h"
#include <utility>

namespace pixelhain {

InfoPanel::InfoPanel(
    InfoLineSource source, Background& background, MainLoop& loop, std::function<void()> changed)
    : source_(std::move(source))
    , background_(background)
    , loop_(loop)
    , changed_(std::move(changed))
{
}

void InfoPanel::show(PhotoItem const& item)
{
    if (item_ == item)
        return;
    // Of the same photo more is known; until the lines are there, the old ones are true.
    if (!item_ || item_->url != item.url)
        lines_.clear();
    item_ = item;
    reading_ = runThen(
        background_, loop_, Priority::userInitiated,
        [source = source_, item] { return source(item); },
        [this](std::vector<std::string> lines) {
            lines_ = std::move(lines);
            changed_();
        });
}

void InfoPanel::hide()
{
    reading_.cancel();
    item_.reset();
    lines_.clear();
}

} // namespace pixelhain
