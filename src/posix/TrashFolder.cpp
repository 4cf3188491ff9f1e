#include "posix/TrashFolder.h"
#include "posix/FilePlace.h"
#include "posix/FolderHandle.h"
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace pixelhain {

namespace {

constexpr mode_t ownerOnly = 0700;
constexpr int plainFolder = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::string homeFolder()
{
    char const* const home = std::getenv("HOME");
    if (home != nullptr && home[0] == '/')
        return home;
    passwd entry {};
    passwd* found = nullptr;
    std::vector<char> buffer(16384);
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0
        || found == nullptr || entry.pw_dir == nullptr || entry.pw_dir[0] != '/')
        return {};
    return entry.pw_dir;
}

// A folder that is there or is made now. `flags` say whether a link to one will do.
Descriptor folderIn(Descriptor const& parent, std::string const& name, int flags)
{
    Descriptor folder(uninterrupted([&] { return ::openat(parent.get(), name.c_str(), flags); }));
    if (folder || errno != ENOENT)
        return folder;
    if (uninterrupted([&] { return ::mkdirat(parent.get(), name.c_str(), ownerOnly); }) != 0
        && errno != EEXIST)
        return {};
    return Descriptor(uninterrupted([&] { return ::openat(parent.get(), name.c_str(), flags); }));
}

std::optional<TrashFolder> openTrash(Descriptor const& trash, FileUrl const& url, int flags)
{
    TrashFolder folder { url, {}, {} };
    folder.files = folderIn(trash, "files", flags);
    if (folder.files)
        folder.info = folderIn(trash, "info", flags);
    if (!folder.info)
        return std::nullopt;
    return folder;
}

// The folder at `url`, made with those above it, but nothing is made on another drive.
Descriptor folderOn(Drive const& drive, FileUrl const& url, bool& isOnDrive)
{
    if (auto folder = openFolder(url.path(), O_PATH)) {
        auto const its = driveOf(folder.get());
        isOnDrive = !its || *its == drive;
        return isOnDrive ? std::move(folder) : Descriptor();
    }
    if (url.path().size() <= 1)
        return {};
    auto const parent = folderOn(drive, url.parent(), isOnDrive);
    return parent ? folderIn(parent, std::string(url.name()), O_PATH | O_DIRECTORY | O_CLOEXEC)
                  : Descriptor();
}

bool isOwn(Descriptor const& folder)
{
    struct stat status { };
    return folder && statusOf(folder.get(), status) && status.st_uid == ::geteuid();
}

// Anybody may have made it: only with the sticky bit are folders in it safe from others.
Descriptor openSharedTrash(Descriptor const& top)
{
    Descriptor folder(uninterrupted([&] { return ::openat(top.get(), ".Trash", plainFolder); }));
    struct stat status { };
    if (folder && statusOf(folder.get(), status) && (status.st_mode & S_ISVTX) != 0)
        return folder;
    return {};
}

std::optional<TrashFolder> openOwnTrash(
    Descriptor const& parent, FileUrl const& parentUrl, std::string const& name)
{
    auto const trash = folderIn(parent, name, plainFolder);
    if (!isOwn(trash))
        return std::nullopt;
    return openTrash(trash, parentUrl.child(name), plainFolder);
}

} // namespace

FileUrl homeTrashUrl(char const* flatpakInfo)
{
    // A flatpak has a data folder of its own, which may be deleted with the program. The user's
    // trash stays the desktop's. Its variables are inherited by whatever is started from there, on
    // the outside too; its file is not.
    bool const isFlatpak = ::access(flatpakInfo, F_OK) == 0;
    char const* const data = std::getenv(isFlatpak ? "HOST_XDG_DATA_HOME" : "XDG_DATA_HOME");
    if (data != nullptr && data[0] == '/')
        return FileUrl(data).standardized().child("Trash");
    auto const home = homeFolder();
    return home.empty() ? FileUrl() : FileUrl(home).standardized().child(".local/share/Trash");
}

HomeTrash openHomeTrash(FileUrl const& url, Drive const& drive)
{
    HomeTrash home;
    if (url.empty())
        return home;
    if (auto const trash = folderOn(drive, url, home.isOnDrive))
        home.folder = openTrash(trash, url, O_PATH | O_DIRECTORY | O_CLOEXEC);
    return home;
}

std::optional<TrashFolder> openDriveTrash(DriveTop const& top)
{
    auto const user = std::to_string(::geteuid());
    if (auto const shared = openSharedTrash(top.folder))
        if (auto trash = openOwnTrash(shared, top.url.child(".Trash"), user))
            return trash;
    return openOwnTrash(top.folder, top.url, ".Trash-" + user);
}

} // namespace pixelhain
