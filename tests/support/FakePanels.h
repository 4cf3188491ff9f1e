#pragma once
#include "ports/Panels.h"
#include <vector>

namespace pixelhain {

/// Dialogs that a test answers.
class FakePanels final : public Panels {
public:
    FakePanels();
    ~FakePanels() override;

    void chooseFolder(
        FolderPanelRequest const& request, std::function<void(FileUrl)> chosen) override;

    void chooseSaveFile(
        SavePanelRequest const& request, std::function<void(FileUrl)> chosen) override;

    /// Chooses a folder or a file in the panel that was shown last.
    void choose(FileUrl const& url) { chosen_(url); }

    std::vector<FolderPanelRequest> requests;
    std::vector<SavePanelRequest> saveRequests;

private:
    std::function<void(FileUrl)> chosen_;
};

} // namespace pixelhain
