#pragma once
#include "model/PhotoIndex.h"
#include "model/PhotoItem.h"
#include <chrono>
#include <functional>
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
    std::chrono::milliseconds patience { 0 }; ///< before names are told
};

/// The photos of several folders, and the order of their names.
struct ScanResult {
    std::vector<PhotoItem> items;
    PhotoIndex index;
    std::vector<FileUrl> gone; ///< listed, but no photos or gone when they were looked at
};

/// Hears of a scan's photos before the file system was asked about each of them: all are there, in
/// the same order, those of `gone` too, known by name alone.
using TellNames = std::function<void(ScanResult names)>;

/// Lists one folder, unsorted, as the file system yields it; with `recursive` what lies beneath it
/// too, hidden folders, packages and links left out. A folder that cannot be read yields nothing.
std::vector<PhotoItem> scanFolder(ScanTools const& tools, FileUrl const& folder, bool recursive);

/// The scans of several folders one after the other, each photo once, where it was first met.
/// Runs off the main thread. Items are unsorted; the index knows their order. Where looking at the
/// photos takes longer than `patience` and their listing alone says that they are files,
/// `tellNames` is called first, on the same thread, once.
ScanResult scanFolders(ScanTools const& tools, std::span<FileUrl const> folders, bool recursive,
    TellNames const& tellNames = nullptr);

} // namespace pixelhain
