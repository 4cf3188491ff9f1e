#pragma once
#include "base/FileUrl.h"
#include <functional>
#include <optional>
#include <string>

namespace pixelhain {

/// What a folder panel says and where it starts.
struct FolderPanelRequest {
    std::string button;
    std::string message;
    std::optional<FileUrl> start;
    bool mayCreateFolders = false;
};

/// Where a new file is to go, and what is proposed. The file is of one type.
struct SavePanelRequest {
    std::string name; ///< ending included
    std::string typeName; ///< "PDF"
    std::string extension; ///< "pdf"
    std::optional<FileUrl> start;
};

/// Dialogs of the desktop that ask for a place. Main thread only.
class Panels {
public:
    virtual ~Panels() = default;

    /// Lets the user choose one existing folder; calls `chosen` later on the main thread, or never
    /// if the panel is dismissed.
    virtual void chooseFolder(
        FolderPanelRequest const& request, std::function<void(FileUrl)> chosen)
        = 0;

    /// Lets the user choose a place for a file, in folders that may be made there and then; calls
    /// `chosen` later on the main thread, or never if the panel is dismissed. What is chosen has
    /// the type's ending; the user has agreed to replace a file that is there.
    virtual void chooseSaveFile(
        SavePanelRequest const& request, std::function<void(FileUrl)> chosen)
        = 0;
};

} // namespace pixelhain
