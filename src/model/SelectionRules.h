#pragma once
#include "base/FileUrl.h"
#include "model/PhotoItem.h"
#include <set>
#include <span>

namespace pixelhain {

/// The part of `selection` whose photos are still in `items`.
[[nodiscard]] std::set<FileUrl> stillPresent(
    std::set<FileUrl> const& selection, std::span<PhotoItem const> items);

} // namespace pixelhain
