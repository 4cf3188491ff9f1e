#pragma once
#include <string>
#include <string_view>

namespace pixelhain {

/// Absolute path of a file that belongs to the running program: beside it, as in a build folder,
/// else at `installed`, counted from the program's folder. Nobody promises that it is there.
[[nodiscard]] std::string programPlace(std::string_view name, std::string_view installed);

} // namespace pixelhain
