#pragma once
#include "base/FileUrl.h"
#include "posix/Drive.h"
#include <optional>

namespace pixelhain {

/// A trash after the freedesktop.org specification: what was trashed lies in files/, and where it
/// came from is told in info/.
struct TrashFolder {
    FileUrl url;
    Descriptor files;
    Descriptor info;
};

/// Where the user's home trash is, or will be: $XDG_DATA_HOME/Trash, else ~/.local/share/Trash; of
/// a flatpak, which has the file `flatpakInfo`, the same as outside of it. Empty if there is no
/// home.
[[nodiscard]] FileUrl homeTrashUrl(char const* flatpakInfo = "/.flatpak-info");

/// Whether the home trash is the one for files on `drive`, and if so the trash, made if need be;
/// none if that is not possible.
struct HomeTrash {
    bool isOnDrive = false;
    std::optional<TrashFolder> folder;
};
[[nodiscard]] HomeTrash openHomeTrash(FileUrl const& url, Drive const& drive);

/// The user's trash on another drive, made if need be: the administrator's .Trash if it is safe to
/// use, else .Trash-$uid.
[[nodiscard]] std::optional<TrashFolder> openDriveTrash(DriveTop const& top);

} // namespace pixelhain
