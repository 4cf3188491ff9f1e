#pragma once
#include "base/FileUrl.h"
#include <cstddef>
#include <string>
#include <vector>

namespace pixelhain {

class Preferences;

/// The folders that were opened last, newest first: what is remembered of them. Whether they still
/// exist is not known.
namespace recents {
inline constexpr std::size_t most = 10;

/// Only well-formed absolute paths, standardized, each once.
[[nodiscard]] std::vector<FileUrl> read(Preferences const& preferences);
void write(Preferences& preferences, std::vector<FileUrl> const& folders);

/// `folders` with `opened` in front; what is too much falls off the end.
[[nodiscard]] std::vector<FileUrl> with(std::vector<FileUrl> folders, FileUrl const& opened);

/// What each is called beside the others, as valid UTF-8: its name; its name after that of the
/// folder it lies in, where others have the same name; its path, where that does not tell them
/// apart either. "~" stands for `home`.
[[nodiscard]] std::vector<std::string> titles(
    std::vector<FileUrl> const& folders, FileUrl const& home);

/// The path as valid UTF-8, "~" for `home` at its beginning.
[[nodiscard]] std::string shownPath(FileUrl const& folder, FileUrl const& home);
} // namespace recents

} // namespace pixelhain
