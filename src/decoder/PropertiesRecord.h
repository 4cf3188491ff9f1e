#pragma once
#include "ports/PhotoProperties.h"
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace pixelhain {

/// What a file states about its photo as the bytes that go from the decoder process to the program:
/// fields in the order of their numbers, each with number and length in front, in the machine's own
/// byte order. At most PropertyLimits::all; what is longer or no number is left out.
[[nodiscard]] std::vector<std::byte> packProperties(PhotoProperties const& properties);

/// The properties in `record`; nothing if an honest process never packed them. What comes back
/// keeps every promise of PhotoProperties, whoever wrote it.
[[nodiscard]] std::optional<PhotoProperties> unpackProperties(std::span<std::byte const> record);

} // namespace pixelhain
