#pragma once
#include "base/FileUrl.h"
#include <string>
#include <vector>

namespace pixelhain {

/// The files or folders at these paths.
inline std::vector<FileUrl> urls(std::vector<std::string> const& paths)
{
    std::vector<FileUrl> all;
    for (auto const& path : paths)
        all.emplace_back(path);
    return all;
}

} // namespace pixelhain
