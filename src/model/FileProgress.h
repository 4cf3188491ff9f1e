#pragma once
#include <cstddef>

namespace pixelhain {

/// How many files of a long operation are behind it.
struct FileProgress {
    std::size_t done = 0;
    std::size_t total = 0;
    bool operator==(FileProgress const&) const = default;
};

} // namespace pixelhain
