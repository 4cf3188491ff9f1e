#pragma once
#include <string>

namespace pixelhain {

/// Absolute path of the decoder program: beside the running one, as in a build folder, else where
/// it is installed.
[[nodiscard]] std::string decoderProgram();

} // namespace pixelhain
