#pragma once
#include "base/FileUrl.h"
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <sys/stat.h>

namespace pixelhain {

/// All bytes of a file; empty if there is none.
inline std::string bytesOf(FileUrl const& file)
{
    std::ifstream in(file.cString(), std::ios::binary);
    return { std::istreambuf_iterator<char>(in), {} };
}

/// Whether the name is taken, also by a link that leads nowhere.
inline bool isTaken(FileUrl const& file)
{
    struct stat status { };
    return ::lstat(file.cString(), &status) == 0;
}

/// The names of everything in a folder; empty if there is no folder.
inline std::set<std::string> namesIn(FileUrl const& folder)
{
    std::set<std::string> names;
    std::error_code error;
    for (auto const& entry : std::filesystem::directory_iterator(folder.cString(), error))
        names.insert(entry.path().filename().string());
    return names;
}

inline FileUrl makeFolder(FileUrl const& url)
{
    std::filesystem::create_directories(url.cString());
    return url;
}

inline struct stat statusOf(FileUrl const& file)
{
    struct stat status { };
    if (::lstat(file.cString(), &status) != 0)
        status.st_ino = 0;
    return status;
}

} // namespace pixelhain
