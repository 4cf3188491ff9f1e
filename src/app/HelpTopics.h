#pragma once
#include "app/HelpTopic.h"
#include <string_view>
#include <vector>

namespace pixelhain {

/// The manual, in the order of its list. Built when first asked for, then kept.
[[nodiscard]] std::vector<HelpTopic> const& helpTopics();

/// The topic with this id, or null.
[[nodiscard]] HelpTopic const* helpTopic(std::string_view id);

} // namespace pixelhain
