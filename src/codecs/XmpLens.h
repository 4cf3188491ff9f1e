#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

/// The value of `aux:Lens` in an XMP packet, as attribute or as element, entities replaced; nothing
/// if there is none. Passes over the text once, whatever stands in it.
[[nodiscard]] std::optional<std::string> xmpLens(std::string_view packet);

} // namespace pixelhain
