#include "model/BrowserModel.h"
#include "model/Messages.h"
#include "model/RecentFolders.h"
#include <utility>

namespace pixelhain {

void BrowserModel::openRecent(FileUrl const& url)
{
    look(url, [this, url = url.standardized()](Place place) {
        if (place == Place::folder) {
            openPlace(url, std::nullopt);
            setRecentFolders(recents::with(recentFolders, url));
            return true;
        }
        // It stays in the list: its drive may only be away.
        showStatus(messages::folderIsMissing(url.name()));
        return false;
    });
}

void BrowserModel::clearRecentFolders()
{
    setRecentFolders({});
}

void BrowserModel::setRecentFolders(std::vector<FileUrl> places)
{
    if (places == *recentFolders)
        return;
    recentFolders = std::move(places);
    recents::write(ports_.preferences, recentFolders);
}

} // namespace pixelhain
