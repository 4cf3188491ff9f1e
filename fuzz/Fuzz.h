#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace pixelhain {

/// Ends the run as a finding.
inline void mustHold(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace pixelhain
