#pragma once
#include "base/FileUrl.h"
#include "model/PhotoItem.h"
#include "model/UrlSet.h"
#include <span>
#include <vector>

namespace pixelhain {

/// The part of `selection` whose photos are still in `items`.
[[nodiscard]] UrlSet stillPresent(UrlSet const& selection, std::span<PhotoItem const> items);

/// For each of `items`, none twice, whether it is in `urls`. Quickest for URLs that are copies of
/// those of the items, as marks are.
[[nodiscard]] std::vector<bool> membership(UrlSet const& urls, std::span<PhotoItem const> items);

/// The marked photos among `items`, in the order of `items`.
[[nodiscard]] std::vector<FileUrl> markedPhotos(
    UrlSet const& selection, std::span<PhotoItem const> items);

/// Marks the photo, or takes its mark away; whether it is marked now.
bool toggleMark(UrlSet& marks, FileUrl const& photo);

/// Those of `urls` that were among the items before and are no more.
[[nodiscard]] UrlSet vanishedPhotos(std::span<FileUrl const> urls,
    std::span<PhotoItem const> before, std::span<PhotoItem const> after);

[[nodiscard]] UrlSet allPhotos(std::span<PhotoItem const> items);

/// Those of `items` that are not marked.
[[nodiscard]] UrlSet invertedSelection(UrlSet const& selection, std::span<PhotoItem const> items);

} // namespace pixelhain
