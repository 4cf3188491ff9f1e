#pragma once
#include <optional>
#include <string_view>

namespace pixelhain {

class BrowserModel;

/// What stands in the gallery's place while there is nothing to show, from top to bottom, centred.
struct EmptyStateView {
    std::string_view symbol; ///< secondary colour
    double symbolSize = 0;
    double spacing = 0; ///< between the parts
    std::string_view text;
    bool isTextSecondary = false;
    /// The title of the default button, which lets the user choose a folder.
    std::optional<std::string_view> button;
    /// A smaller line in the tertiary colour.
    std::optional<std::string_view> hint;

    bool operator==(EmptyStateView const&) const = default;

    [[nodiscard]] static EmptyStateView noFolder();
    [[nodiscard]] static EmptyStateView noPhotos(BrowserModel const& model);
};

} // namespace pixelhain
