#pragma once
#include "app/HelpTopic.h"

namespace pixelhain {

// The topics one by one, see HelpTopics.h.
[[nodiscard]] HelpTopic startTopic();
[[nodiscard]] HelpTopic galleryTopic();
[[nodiscard]] HelpTopic viewerTopic();
[[nodiscard]] HelpTopic selectTopic();
[[nodiscard]] HelpTopic slideshowTopic();
[[nodiscard]] HelpTopic filesTopic();
[[nodiscard]] HelpTopic contactSheetTopic();
[[nodiscard]] HelpTopic shareTopic();
[[nodiscard]] HelpTopic shortcutsTopic();
[[nodiscard]] HelpTopic faqTopic();

} // namespace pixelhain
