#pragma once
#include "app/HelpTopic.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

class TextOrder;

/// What to look for in the manual: spaces and tabs at both ends do not count, nor do letter case
/// and the width of letters.
class HelpSearch {
public:
    /// `order` must outlive this.
    HelpSearch(std::string_view query, TextOrder const& order);

    /// Whether there is nothing to look for.
    [[nodiscard]] bool isEmpty() const { return folded_.empty(); }

    [[nodiscard]] bool isIn(std::string_view text) const;

    /// Where it stands in `text`, from left to right without overlap; offsets count bytes.
    struct Match {
        std::size_t begin = 0;
        std::size_t end = 0;

        bool operator==(Match const&) const = default;
    };
    [[nodiscard]] std::vector<Match> matches(std::string_view text) const;

private:
    TextOrder const& order_;
    std::string folded_;
};

/// The topics that the query is found in, in their order; all if there is nothing to look for.
[[nodiscard]] std::vector<HelpTopic const*> filteredTopics(
    std::string_view query, TextOrder const& order);

} // namespace pixelhain
