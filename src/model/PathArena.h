#pragma once
#include "base/FileUrl.h"
#include <cstddef>
#include <string_view>

namespace pixelhain {

/// Makes URLs whose bytes lie side by side in large blocks: a million of them cost no million
/// allocations. A block lives as long as one of its URLs.
class PathArena {
public:
    /// The URL of the entry `name` of the folder at `folder`.
    FileUrl add(std::string_view folder, std::string_view name);

private:
    SharedBytes block_;
    char* free_ = nullptr;
    std::size_t left_ = 0;
    std::size_t nextBlock_ = 4096;
};

} // namespace pixelhain
