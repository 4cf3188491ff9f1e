#pragma once
#include <string>
#include <string_view>

namespace pixelhain {

/// `text` with ASCII letters in lower case; other bytes unchanged.
std::string asciiLowercased(std::string_view text);

/// `text` without the spaces and tabs at both ends; line breaks stay.
std::string_view trimmedBlanks(std::string_view text);

/// `bytes` as valid UTF-8 for showing: each maximal ill-formed sequence becomes one U+FFFD.
std::string displayText(std::string_view bytes);

} // namespace pixelhain
