#pragma once
#include "base/FileUrl.h"
#include <QString>
#include <optional>
#include <string_view>
#include <vector>

namespace pixelhain {

/// The file behind "file:///…" or "file://localhost/…", percent signs decoded to bytes; nothing for
/// anything else.
[[nodiscard]] std::optional<FileUrl> fileUrlFromUri(std::string_view uri);

/// "file:///…" for the file; bytes that a URI has no letter for, and all that are not ASCII, stand
/// as %HH. The same spelling as other programs use, so that theirs and ours can be compared.
[[nodiscard]] std::string uriOf(FileUrl const& url);

/// The files of a text/uri-list, in its order; lines that are none are left out.
[[nodiscard]] std::vector<FileUrl> fileUrlsFromUriList(std::string_view list);

/// The file that a command-line argument means: a file URI, an absolute path, or one that counts
/// from `currentFolder`. Nothing for an empty argument.
[[nodiscard]] std::optional<FileUrl> fileUrlFromArgument(
    std::string_view argument, FileUrl const& currentFolder);

/// Bytes as text for showing, and text that the user or a dialog gave as bytes.
[[nodiscard]] QString shownText(std::string_view bytes);
[[nodiscard]] FileUrl fileUrlFromDialog(QString const& path);

} // namespace pixelhain
