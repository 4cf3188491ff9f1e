#pragma once
#include "base/FileUrl.h"
#include <unordered_set>

namespace pixelhain {

/// Not noexcept on purpose: the standard library then keeps the hash of each element instead of
/// computing it again at every look into a bucket.
struct UrlHash {
    std::size_t operator()(FileUrl const& url) const { return std::hash<FileUrl> {}(url); }
};

/// Photos in no order. Marking, looking one up and unmarking cost the same however many there are.
using UrlSet = std::unordered_set<FileUrl, UrlHash>;

} // namespace pixelhain
