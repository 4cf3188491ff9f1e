#include "app/InlineCharacters.h"
#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace pixelhain {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

struct Range {
    char32_t first;
    char32_t last;
};

// Punctuation and symbols of the scripts that a European text may hold; gaps that no character
// has been given to are closed.
constexpr std::array punctuation = { Range { 0x21, 0x2F }, Range { 0x3A, 0x40 },
    Range { 0x5B, 0x60 }, Range { 0x7B, 0x7E }, Range { 0xA1, 0xA9 }, Range { 0xAB, 0xAC },
    Range { 0xAE, 0xB1 }, Range { 0xB4, 0xB4 }, Range { 0xB6, 0xB8 }, Range { 0xBB, 0xBB },
    Range { 0xBF, 0xBF }, Range { 0xD7, 0xD7 }, Range { 0xF7, 0xF7 }, Range { 0x2C2, 0x2C5 },
    Range { 0x2D2, 0x2DF }, Range { 0x37E, 0x37E }, Range { 0x387, 0x387 }, Range { 0x3F6, 0x3F6 },
    Range { 0x2010, 0x2027 }, Range { 0x2030, 0x205E }, Range { 0x207A, 0x207E },
    Range { 0x208A, 0x208E }, Range { 0x20A0, 0x20C0 }, Range { 0x2100, 0x2101 },
    Range { 0x2103, 0x2106 }, Range { 0x2116, 0x2118 }, Range { 0x211E, 0x2123 },
    Range { 0x218A, 0x244A }, Range { 0x249C, 0x24E9 }, Range { 0x2500, 0x2775 },
    Range { 0x2794, 0x2BFF }, Range { 0x2E00, 0x2E2E }, Range { 0x2E30, 0x2FFB },
    Range { 0x3001, 0x3004 }, Range { 0x3008, 0x3020 }, Range { 0xFE10, 0xFE19 },
    Range { 0xFE30, 0xFE6B }, Range { 0xFF01, 0xFF0F }, Range { 0xFF1A, 0xFF20 },
    Range { 0xFF3B, 0xFF40 }, Range { 0xFF5B, 0xFF65 }, Range { 0xFFE0, 0xFFEE },
    Range { 0xFFFC, 0xFFFD }, Range { 0x1F000, 0x1F0F5 }, Range { 0x1F10D, 0x1FAF6 } };

constexpr std::array<std::pair<std::string_view, char32_t>, 20> namedCharacters = { {
    { "amp", '&' },
    { "apos", '\'' },
    { "ast", '*' },
    { "bdquo", 0x201E },
    { "bull", 0x2022 },
    { "euro", 0x20AC },
    { "gt", '>' },
    { "hellip", 0x2026 },
    { "ldquo", 0x201C },
    { "lsquo", 0x2018 },
    { "lt", '<' },
    { "mdash", 0x2014 },
    { "middot", 0xB7 },
    { "minus", 0x2212 },
    { "nbsp", 0xA0 },
    { "ndash", 0x2013 },
    { "quot", '"' },
    { "rdquo", 0x201D },
    { "rsquo", 0x2019 },
    { "times", 0xD7 },
} };

bool isSpace(char32_t character)
{
    switch (character) {
    case ' ':
    case '\t':
    case '\n':
    case '\f':
    case '\r':
    case 0xA0:
    case 0x1680:
    case 0x202F:
    case 0x205F:
    case 0x3000:
        return true;
    default:
        return character >= 0x2000 && character <= 0x200A;
    }
}

CharacterClass classOf(char32_t character)
{
    if (isSpace(character))
        return CharacterClass::space;
    bool const marks = std::ranges::any_of(punctuation,
        [=](Range const& range) { return character >= range.first && character <= range.last; });
    return marks ? CharacterClass::punctuation : CharacterClass::other;
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

int digitValue(char digit, int base)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    auto const lower = static_cast<char>(digit | 0x20);
    return base == 16 && lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

Entity numberedCharacter(std::string_view text)
{
    bool const isHex = text.size() > 2 && (text[2] == 'x' || text[2] == 'X');
    int const base = isHex ? 16 : 10;
    std::size_t const first = isHex ? 3 : 2;
    std::size_t const most = isHex ? 6 : 7;
    char32_t value = 0;
    auto at = first;
    for (; at < text.size() && digitValue(text[at], base) >= 0; ++at) {
        if (at - first == most)
            return {};
        value = value * static_cast<char32_t>(base)
            + static_cast<char32_t>(digitValue(text[at], base));
    }
    if (at == first || at == text.size() || text[at] != ';')
        return {};
    return { value == 0 ? replacementCharacter : value, at + 1 };
}

} // namespace

DecodedCharacter decodedCharacter(std::string_view text, std::size_t position)
{
    auto const lead = static_cast<unsigned char>(text[position]);
    std::size_t const length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (length == 1 || position + length > text.size())
        return { lead, 1 };
    auto value = static_cast<char32_t>(lead & (0x7FU >> length));
    for (std::size_t i = 1; i < length; ++i) {
        auto const byte = text[position + i];
        if (!isContinuation(byte))
            return { lead, 1 };
        value = value << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return { value, length };
}

void appendCharacter(char32_t character, std::string& text)
{
    auto const add = [&](char32_t byte) { text += static_cast<char>(byte); };
    bool const exists = character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
    auto const c = exists ? character : replacementCharacter;
    if (c < 0x80) {
        add(c);
        return;
    }
    if (c < 0x800) {
        add(0xC0 | c >> 6);
    } else {
        if (c < 0x10000) {
            add(0xE0 | c >> 12);
        } else {
            add(0xF0 | c >> 18);
            add(0x80 | (c >> 12 & 0x3F));
        }
        add(0x80 | (c >> 6 & 0x3F));
    }
    add(0x80 | (c & 0x3F));
}

CharacterClass classBefore(std::string_view text, std::size_t position)
{
    if (position == 0)
        return CharacterClass::space;
    auto start = position - 1;
    while (start > 0 && isContinuation(text[start]))
        --start;
    return classOf(decodedCharacter(text, start).value);
}

CharacterClass classAfter(std::string_view text, std::size_t position)
{
    if (position >= text.size())
        return CharacterClass::space;
    return classOf(decodedCharacter(text, position).value);
}

bool isAsciiPunctuation(char character)
{
    return static_cast<unsigned char>(character) < 0x80
        && classOf(static_cast<unsigned char>(character)) == CharacterClass::punctuation;
}

Entity entityAt(std::string_view text)
{
    if (text.size() < 3 || text[0] != '&')
        return {};
    if (text[1] == '#')
        return numberedCharacter(text);
    auto const end = text.find(';');
    if (end == std::string_view::npos)
        return {};
    auto const name = text.substr(1, end - 1);
    auto const found
        = std::ranges::find(namedCharacters, name, &std::pair<std::string_view, char32_t>::first);
    return found == namedCharacters.end() ? Entity {} : Entity { found->second, end + 1 };
}

} // namespace pixelhain
