#pragma once
#include "base/FileUrl.h"
#include <cstddef>
#include <span>
#include <vector>

namespace pixelhain {

class FileSystem;
class PhotoTest;
class TextOrder;

/// What looking into folders needs; all thread-safe.
struct FolderTools {
    FileSystem const& files;
    TextOrder const& textOrder;
    PhotoTest& photoTest;
};

/// The visible subfolders of a folder in display order: by their names as people order them, and
/// where those are equivalent by their bytes. Hidden folders, packages and links to folders are
/// left out. Empty for a folder that cannot be read. Waits for a disk.
[[nodiscard]] std::vector<FileUrl> subfolderURLs(FolderTools const& tools, FileUrl const& folder);

/// A number that differs for different lists of subfolders.
[[nodiscard]] std::size_t hashOfNames(std::span<FileUrl const> subfolders);

/// How many entries directly in a folder have the name of a photo, hidden ones left out. Only names
/// are looked at: a folder or a link with such a name counts too. 0 for a folder that cannot be
/// read. Waits for a disk.
[[nodiscard]] std::size_t directPhotoCount(FolderTools const& tools, FileUrl const& folder);

} // namespace pixelhain
