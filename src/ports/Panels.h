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

/// Dialogs of the desktop that ask for a place. Main thread only.
class Panels {
public:
    virtual ~Panels() = default;

    /// Lets the user choose one existing folder; calls `chosen` later on the main thread, or never
    /// if the panel is dismissed.
    virtual void chooseFolder(
        FolderPanelRequest const& request, std::function<void(FileUrl)> chosen)
        = 0;
};

} // namespace pixelhain
