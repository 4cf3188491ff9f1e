#pragma once
#include "base/FileUrl.h"
#include "model/UrlSet.h"
#include <functional>
#include <optional>
#include <vector>

namespace pixelhain {

/// What a command was meant for when it was given.
struct CommandTargets {
    using Successor = std::function<std::optional<FileUrl>(FileUrl const&)>;

    std::vector<FileUrl> photos; ///< the marked ones
    /// The photo in the viewer or under the cursor: the target if none of `photos` is left.
    std::optional<FileUrl> current;

    [[nodiscard]] std::vector<FileUrl> photosNow() const;

    /// Follows the removal of `gone` from the gallery: no photo is a target twice, and in the place
    /// of `current` comes the photo that `successor` names, the one then in the viewer.
    void follow(UrlSet const& gone, Successor const& successor);
};

} // namespace pixelhain
