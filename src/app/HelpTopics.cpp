#include "app/HelpTopics.h"
#include "app/HelpContent.h"
#include <algorithm>

namespace pixelhain {

std::vector<HelpTopic> const& helpTopics()
{
    static std::vector<HelpTopic> const topics
        = { startTopic(), galleryTopic(), viewerTopic(), selectTopic(), slideshowTopic(),
              filesTopic(), contactSheetTopic(), shareTopic(), shortcutsTopic(), faqTopic() };
    return topics;
}

HelpTopic const* helpTopic(std::string_view id)
{
    auto const& topics = helpTopics();
    auto const found = std::ranges::find(topics, id, &HelpTopic::id);
    return found == topics.end() ? nullptr : &*found;
}

} // namespace pixelhain
