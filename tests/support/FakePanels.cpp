#include "support/FakePanels.h"

namespace pixelhain {

FakePanels::FakePanels() = default;
FakePanels::~FakePanels() = default;

void FakePanels::chooseFolder(
    FolderPanelRequest const& request, std::function<void(FileUrl)> chosen)
{
    requests.push_back(request);
    chosen_ = std::move(chosen);
}

void FakePanels::chooseSaveFile(
    SavePanelRequest const& request, std::function<void(FileUrl)> chosen)
{
    saveRequests.push_back(request);
    chosen_ = std::move(chosen);
}

} // namespace pixelhain
