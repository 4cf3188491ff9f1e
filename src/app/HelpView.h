#pragma once
#include "app/HelpSearch.h"
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// The help window: which topics its list holds and which one is shown. Lengths are points.
class HelpView {
public:
    static constexpr std::string_view windowTitle = "Pixelhain-Hilfe";
    static constexpr double defaultWidth = 860;
    static constexpr double defaultHeight = 620;
    static constexpr std::string_view searchPrompt = "Hilfe durchsuchen";
    static constexpr std::string_view clearTitle = "Suchtext löschen";
    static constexpr std::string_view listName = "Themen"; ///< said by screen readers
    static constexpr std::string_view noMatches = "Keine Treffer";
    static constexpr std::string_view noTopic = "Wähle links ein Thema.";

    /// `order` must outlive this.
    explicit HelpView(TextOrder const& order);

    std::optional<std::string> const& selection() const { return selection_; }
    std::string const& query() const { return query_; }
    std::vector<HelpTopic const*> const& filtered() const { return filtered_; }

    /// The selected topic, whether or not it is in the list; null for none.
    [[nodiscard]] HelpTopic const* topic() const;

    /// What is marked in the shown topic.
    [[nodiscard]] HelpSearch highlight() const { return { query_, order_ }; }

    void select(std::optional<std::string> id);

    /// The shown topic stays while it is in the list, or while nothing is; otherwise the first one
    /// found takes its place.
    void setQuery(std::string query);

    /// As when the window opens.
    void reset();

private:
    TextOrder const& order_;
    std::optional<std::string> selection_;
    std::string query_;
    std::vector<HelpTopic const*> filtered_;
};

} // namespace pixelhain
