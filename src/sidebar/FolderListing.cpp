#include "sidebar/FolderListing.h"
#include "model/FolderNames.h"
#include "model/NameRanks.h"
#include "model/PathArena.h"
#include "model/PhotoTest.h"
#include "ports/FileSystem.h"
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pixelhain {

namespace {

struct Entries {
    std::vector<FileUrl> folders;
    std::vector<FileUrl> untold; ///< may be folders: the file system does not say in its listing
};

Entries entriesOf(FileSystem const& files, FileUrl const& folder)
{
    PathArena arena;
    Entries found;
    auto const visit = [&](std::string_view name, EntryKind kind) {
        if (kind != EntryKind::folder && kind != EntryKind::unknown)
            return;
        if (isHiddenName(name) || isPackageName(name))
            return;
        auto& list = kind == EntryKind::folder ? found.folders : found.untold;
        list.push_back(arena.add(folder.path(), name));
    };
    if (!files.list(folder, visit))
        return {};
    return found;
}

std::vector<FileUrl> inDisplayOrder(std::vector<FileUrl> folders, TextOrder const& order)
{
    auto const ranks = rankNames(
        folders.size(), [&](std::size_t i) { return folders[i].path(); }, order);
    std::vector<FileUrl> ordered(folders.size());
    for (std::size_t i = 0; i < folders.size(); ++i)
        ordered[ranks[i]] = std::move(folders[i]);
    return ordered;
}

} // namespace

std::vector<FileUrl> subfolderURLs(FolderTools const& tools, FileUrl const& folder)
{
    auto found = entriesOf(tools.files, folder);
    if (!found.untold.empty()) {
        auto const details = tools.files.details(found.untold);
        for (std::size_t i = 0; i < found.untold.size(); ++i)
            if (details[i] && details[i]->kind == EntryKind::folder)
                found.folders.push_back(std::move(found.untold[i]));
    }
    return inDisplayOrder(std::move(found.folders), tools.textOrder);
}

std::size_t hashOfNames(std::span<FileUrl const> subfolders)
{
    std::size_t hash = subfolders.size();
    for (auto const& url : subfolders)
        hash = hash * 31 + std::hash<std::string_view> {}(url.name());
    return hash;
}

std::size_t directPhotoCount(FolderTools const& tools, FileUrl const& folder)
{
    std::size_t count = 0;
    // Most neighbours share their extension; its answer is at hand without a lock.
    std::string lastExtension;
    std::optional<bool> lastAnswer;
    auto const visit = [&](std::string_view name, EntryKind) {
        if (isHiddenName(name))
            return;
        auto const extension = extensionOf(name);
        if (!lastAnswer || extension != lastExtension) {
            lastAnswer = tools.photoTest.isImageName(name);
            lastExtension = extension;
        }
        count += *lastAnswer ? 1 : 0;
    };
    return tools.files.list(folder, visit) ? count : 0;
}

} // namespace pixelhain
