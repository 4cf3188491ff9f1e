#pragma once
#include "base/FileUrl.h"
#include <string>

namespace pixelhain {

class FileSystem;

/// The `number`th name for a file: the name itself, then "IMG_1 2.jpg", "IMG_1 3.jpg" and so on.
[[nodiscard]] std::string numberedName(std::string_view name, std::size_t number);

/// The free names for a file in a folder, one after the other: for a caller that finds a name
/// taken which was free a moment ago. Waits for the disk.
class FreeNames {
public:
    FreeNames(FileSystem const& files, FileUrl const& folder, std::string_view name);

    [[nodiscard]] FileUrl next();

private:
    FileSystem const& files_;
    FileUrl folder_;
    std::string name_;
    std::size_t number_ = 0;
};

/// The first free name. Waits for the disk.
[[nodiscard]] FileUrl uniqueDestination(
    FileSystem const& files, FileUrl const& folder, std::string_view name);

} // namespace pixelhain
