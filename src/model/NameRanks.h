#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace pixelhain {

class TextOrder;

/// The rank of each of `count` paths, from 0 without gaps: by the natural order of their last
/// components, and where those compare equal by the bytes of the whole path.
std::vector<std::uint32_t> rankNames(std::size_t count,
    std::function<std::string_view(std::size_t)> const& pathAt, TextOrder const& order);

} // namespace pixelhain
