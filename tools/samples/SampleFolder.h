#pragma once
#include <filesystem>
#include <optional>
#include <string>

namespace pixelhain {

/// Puts the samples into `folder`, which is made if need be, and notes there that they are
/// complete; where that is noted already nothing is touched. Pictures that a former, interrupted
/// run left are kept. A folder with other things in it is refused. `scale` multiplies the pictures'
/// sizes. Gives the reason if it did not work out.
std::optional<std::string> writeSamples(std::filesystem::path const& folder, double scale);

} // namespace pixelhain
