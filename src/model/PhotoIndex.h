#pragma once
#include "model/PhotoItem.h"
#include "model/SortKey.h"
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

class TextOrder;

/// What is computed once per scan about a list of photos, so that sorting and filtering it again
/// costs no collation: each photo's rank by name, and on the first search its folded name.
class PhotoIndex {
public:
    PhotoIndex() = default;

    /// Ranks `items` by name in natural order; names that compare equal by their path's bytes.
    PhotoIndex(std::span<PhotoItem const> items, TextOrder const& order);

    std::size_t size() const { return rank_.size(); }

    /// The items that match `searchText`, sorted. `items` must be the list this was made from.
    std::vector<PhotoItem> visible(std::span<PhotoItem const> items, TextOrder const& order,
        std::string_view searchText, SortKey sortKey, bool ascending);

private:
    std::vector<std::uint32_t> rank_;
    std::string folded_;
    std::vector<std::uint32_t> foldedEnd_;
};

} // namespace pixelhain
