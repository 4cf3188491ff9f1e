#pragma once
#include "model/PhotoIndex.h"
#include "model/PhotoItem.h"
#include <span>
#include <vector>

namespace pixelhain {

class FileSystem;
class PhotoTest;
class TextOrder;

/// What a scan needs; all thread-safe.
struct ScanTools {
    FileSystem const& files;
    PhotoTest& photoTest;
    TextOrder const& textOrder;
};

/// The photos of several folders, and the order of their names.
struct ScanResult {
    std::vector<PhotoItem> items;
    PhotoIndex index;
};

/// Lists one folder, unsorted, as the file system yields it; with `recursive` what lies beneath it
/// too, hidden folders, packages and links left out. A folder that cannot be read yields nothing.
std::vector<PhotoItem> scanFolder(ScanTools const& tools, FileUrl const& folder, bool recursive);

/// The scans of several folders one after the other, each photo once, where it was first met.
/// Runs off the main thread. Items are unsorted; the index knows their order.
ScanResult scanFolders(ScanTools const& tools, std::span<FileUrl const> folders, bool recursive);

} // namespace pixelhain
