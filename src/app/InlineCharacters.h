#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace pixelhain {

/// What a mark of emphasis sees in its neighbours. The ends of a text count as white space.
enum class CharacterClass { space, punctuation, other };

/// The classes of the characters before and after `position`, which lies between characters.
[[nodiscard]] CharacterClass classBefore(std::string_view text, std::size_t position);
[[nodiscard]] CharacterClass classAfter(std::string_view text, std::size_t position);

[[nodiscard]] bool isAsciiPunctuation(char character);

/// The length of the character at `position`, and the character itself, of well-formed UTF-8. What
/// is not well-formed is taken byte by byte.
struct DecodedCharacter {
    char32_t value = 0;
    std::size_t length = 1;
};
[[nodiscard]] DecodedCharacter decodedCharacter(std::string_view text, std::size_t position);

/// Adds a character as UTF-8; U+FFFD for one that there is not.
void appendCharacter(char32_t character, std::string& text);

/// A character that stands for itself in "&…;" at the start of `text`, by number or by one of the
/// common names, and how many bytes that takes; length 0 if there is none.
struct Entity {
    char32_t value = 0;
    std::size_t length = 0;
};
[[nodiscard]] Entity entityAt(std::string_view text);

} // namespace pixelhain
