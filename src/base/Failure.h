#pragma once
#include <string>

namespace pixelhain {

/// Why something could not be done, in words for the person who asked for it.
struct Failure {
    std::string reason;
    bool operator==(Failure const&) const = default;
};

} // namespace pixelhain
