#pragma once
#include "app/HelpBlock.h"
#include <string>
#include <vector>

namespace pixelhain {

/// One page of the manual.
struct HelpTopic {
    std::string id; ///< never shown
    std::string title;
    std::string symbol;
    std::vector<HelpBlock> blocks;
};

/// All that a search looks at: the title and the strings of the blocks in their order, one space
/// between any two, marks of bold and italic included.
[[nodiscard]] std::string searchText(HelpTopic const& topic);

} // namespace pixelhain
