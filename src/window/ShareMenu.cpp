#include "window/ShareMenu.h"
#include "model/BrowserModel.h"
#include "model/Messages.h"
#include "ports/Clipboard.h"
#include "ports/Sharing.h"

namespace pixelhain {

void ShareMenu::prepare()
{
    sharing_.refresh();
}

std::vector<MenuEntry> ShareMenu::entries(std::vector<FileUrl> const& photos) const
{
    std::vector<MenuEntry> all;
    for (auto const& service : sharing_.services())
        all.push_back(
            MenuEntry::action(service.title, [&sharing = sharing_, id = service.id, photos] {
                if (!photos.empty())
                    sharing.share(id, photos);
            }));
    all.push_back(MenuEntry::action(
        std::string(copyTitle), [&model = model_, &clipboard = clipboard_, photos] {
            if (photos.empty())
                return;
            clipboard.setFiles(photos);
            model.showStatus(messages::copiedToClipboard(photos.size()));
        }));
    return all;
}

} // namespace pixelhain
