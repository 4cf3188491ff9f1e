#pragma once
#include "ports/Panels.h"
#include <vector>

namespace pixelhain {

/// Dialogs that a test answers.
class FakePanels final : public Panels {
public:
    void chooseFolder(
        FolderPanelRequest const& request, std::function<void(FileUrl)> chosen) override
    {
        requests.push_back(request);
        chosen_ = std::move(chosen);
    }

    /// Chooses a folder in the panel that was shown last.
    void choose(FileUrl const& url) { chosen_(url); }

    std::vector<FolderPanelRequest> requests;

private:
    std::function<void(FileUrl)> chosen_;
};

} // namespace pixelhain
