#pragma once
#include <string>

namespace pixelhain {

/// The folder of the build under test, where its programs lie.
[[nodiscard]] std::string buildFolder();

/// A collection of real pictures with known answers beside the checkout; empty if there is none.
[[nodiscard]] std::string photosFolder();

} // namespace pixelhain
