#pragma once
#include <cstddef>
#include <optional>
#include <vector>

namespace pixelhain {

/// Where the keyboard cursor goes by `delta` in a list of `count` photos, at least one. Without a
/// cursor a positive step comes from before the first photo, a negative one from behind the last;
/// a list shorter than the step ends at its last photo. With a cursor, a step of two or more that
/// would leave the list stays, a single one too.
[[nodiscard]] std::size_t movedCursor(
    std::optional<std::size_t> cursor, std::ptrdiff_t delta, std::size_t count);

/// The photo that takes the place of the one at `index` when those marked in `gone` leave the
/// list: itself if it stays, else the first after it that does, else the nearest before it. An
/// index of the old list; none if there was none or none stays.
[[nodiscard]] std::optional<std::size_t> survivor(
    std::optional<std::size_t> index, std::vector<bool> const& gone);

/// The index that the photo at `index`, which stays, has once the others have gone.
[[nodiscard]] std::size_t indexAfterRemoval(std::size_t index, std::vector<bool> const& gone);

} // namespace pixelhain
