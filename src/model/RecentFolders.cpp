#include "model/RecentFolders.h"
#include "base/Text.h"
#include "model/Settings.h"
#include "ports/Preferences.h"
#include <algorithm>

namespace pixelhain {

namespace {

std::string shownName(FileUrl const& folder, FileUrl const& home)
{
    return folder == home ? "~" : displayText(folder.name());
}

std::string shownNameInParent(FileUrl const& folder, FileUrl const& home)
{
    auto const parent = folder.parent();
    if (folder == home || folder == parent)
        return shownName(folder, home);
    auto const above = shownName(parent, home);
    return above + (above == "/" ? "" : "/") + displayText(folder.name());
}

template <typename Title>
void titleAnew(std::vector<std::string>& titles, std::vector<FileUrl> const& folders, Title title)
{
    auto const before = titles;
    for (std::size_t i = 0; i < titles.size(); ++i)
        if (std::ranges::count(before, before[i]) > 1)
            titles[i] = title(folders[i]);
}

} // namespace

std::vector<FileUrl> recents::read(Preferences const& preferences)
{
    std::vector<FileUrl> folders;
    auto const paths = preferences.texts(settings::recentFoldersKey);
    if (!paths)
        return folders;
    for (auto const& path : *paths) {
        auto const place = settings::storedPlace(path);
        if (place && folders.size() < most && std::ranges::count(folders, *place) == 0)
            folders.push_back(*place);
    }
    return folders;
}

void recents::write(Preferences& preferences, std::vector<FileUrl> const& folders)
{
    std::vector<std::string> paths;
    paths.reserve(folders.size());
    for (auto const& folder : folders)
        paths.emplace_back(folder.path());
    preferences.setTexts(settings::recentFoldersKey, paths);
}

std::vector<FileUrl> recents::with(std::vector<FileUrl> folders, FileUrl const& opened)
{
    std::erase(folders, opened);
    folders.insert(folders.begin(), opened);
    if (folders.size() > most)
        folders.resize(most);
    return folders;
}

std::vector<std::string> recents::titles(std::vector<FileUrl> const& folders, FileUrl const& home)
{
    std::vector<std::string> titles;
    titles.reserve(folders.size());
    for (auto const& folder : folders)
        titles.push_back(shownName(folder, home));
    titleAnew(
        titles, folders, [&](FileUrl const& folder) { return shownNameInParent(folder, home); });
    titleAnew(titles, folders, [&](FileUrl const& folder) { return shownPath(folder, home); });
    return titles;
}

std::string recents::shownPath(FileUrl const& folder, FileUrl const& home)
{
    if (home.empty() || home == FileUrl("/") || !folder.isWithin(home))
        return displayText(folder.path());
    return "~" + displayText(folder.path().substr(home.path().size()));
}

} // namespace pixelhain
