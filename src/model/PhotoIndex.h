#pragma once
#include "model/FoldedNames.h"
#include "model/PhotoItem.h"
#include "model/SortKey.h"
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace pixelhain {

class TextOrder;

/// What is computed once per scan about a list of photos, so that sorting and filtering it again
/// costs no collation: each photo's rank by name, and on the first search its folded name.
class PhotoIndex {
public:
    PhotoIndex() = default;

    /// Ranks photos by name in natural order; names that compare equal by their path's bytes.
    PhotoIndex(std::span<PhotoItem const> items, TextOrder const& order);
    PhotoIndex(std::span<FileUrl const> urls, TextOrder const& order);

    std::size_t size() const { return rank_.size(); }

    /// The items that match `searchText`, sorted. `items` must be the list this was made from.
    std::vector<PhotoItem> visible(std::span<PhotoItem const> items, TextOrder const& order,
        std::string_view searchText, SortKey sortKey, bool ascending);

    /// Folds the names for searching, unless that is done. The first search does it otherwise.
    void foldNames(std::span<PhotoItem const> items, TextOrder const& order);

    /// Forgets the photos for which `isGone` says yes; it is asked once for each position. The
    /// caller takes the same ones out of the list, whose others keep their order.
    void removeIf(std::function<bool(std::size_t)> const& isGone);

private:
    using Positions = std::vector<std::uint32_t>;

    Positions rank_; ///< of each position, from 0 without gaps
    FoldedNames folded_; ///< empty until the first search
};

/// Takes the photos marked in `gone` out of a list.
void removePhotos(std::vector<PhotoItem>& items, std::vector<bool> const& gone);

/// Takes them out of a list and its index.
void removePhotos(std::vector<PhotoItem>& items, PhotoIndex& index, std::vector<bool> const& gone);

} // namespace pixelhain
