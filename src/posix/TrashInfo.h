#pragma once
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

/// The bytes of a path as they stand in a trash's info file: all but letters, digits, "/", "-",
/// ".", "_" and "~" as "%" and two hexadecimal digits.
std::string percentEncoded(std::string_view path);

/// What an info file says of a file that goes to the trash at `now`; `path` is relative to the top
/// folder of its drive, or absolute in the home trash. The date is in local time.
std::string trashInfoText(std::string_view path, std::time_t now);

/// The path that an info file tells, whichever program wrote it; nothing if it tells none.
std::optional<std::string> pathIn(std::string_view trashInfoText);

/// What follows a file's name in the name of its info file.
inline constexpr std::string_view trashInfoSuffix = ".trashinfo";

/// A name for the file `name` in a trash: the name itself for `number` 1, "name 2.ext" for 2, and
/// so on. At most `longest` bytes; what is too long is shortened in front of the number and
/// extension, not within a character.
std::string trashName(std::string_view name, unsigned number, std::size_t longest);

} // namespace pixelhain
