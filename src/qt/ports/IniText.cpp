#include "qt/ports/IniText.h"
#include "base/Text.h"
#include <algorithm>
#include <array>
#include <charconv>

namespace pixelhain {

namespace {

bool isKeyByte(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || (byte >= '0' && byte <= '9') || byte == '_' || byte == '-' || byte == '.';
}

bool isPlain(std::string_view bytes)
{
    return std::ranges::none_of(bytes, [](char byte) {
        auto const value = static_cast<unsigned char>(byte);
        return value < 0x20 || value == 0x7f || byte == '"' || byte == '\\';
    });
}

// The bytes of one character, as far as they are well-formed; one byte otherwise.
std::string_view firstCharacter(std::string_view bytes)
{
    auto const lead = static_cast<unsigned char>(bytes.front());
    std::size_t const length = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    auto const whole = bytes.substr(0, length);
    return whole.size() == length && displayText(whole) == whole ? whole : bytes.substr(0, 1);
}

void appendQuoted(std::string_view bytes, std::string& out)
{
    constexpr std::string_view digits = "0123456789abcdef";
    out += '"';
    while (!bytes.empty()) {
        auto const one = firstCharacter(bytes);
        bytes.remove_prefix(one.size());
        auto const value = static_cast<unsigned char>(one.front());
        if (isPlain(one) && (one.size() > 1 || value < 0x80)) {
            out += one;
        } else if (value == '"' || value == '\\') {
            out += '\\';
            out += one;
        } else {
            out += "\\x";
            out += digits[value >> 4];
            out += digits[value & 15];
        }
    }
    out += '"';
}

std::optional<char> hexByte(std::string_view two)
{
    unsigned value = 0;
    auto const end = two.data() + two.size();
    auto const read = std::from_chars(two.data(), end, value, 16);
    if (two.size() != 2 || read.ec != std::errc() || read.ptr != end)
        return std::nullopt;
    return static_cast<char>(value);
}

// Takes a quoted text off the front of `rest`; nothing if it is not closed or badly escaped.
std::optional<std::string> takeQuoted(std::string_view& rest)
{
    std::string text;
    for (std::size_t at = 1; at < rest.size(); ++at) {
        if (rest[at] == '"') {
            rest = trimmedBlanks(rest.substr(at + 1));
            return text;
        }
        if (rest[at] != '\\') {
            text += rest[at];
            continue;
        }
        if (++at == rest.size())
            break;
        if (rest[at] != 'x') {
            text += rest[at];
            continue;
        }
        auto const byte = hexByte(rest.substr(at + 1, 2));
        if (!byte)
            break;
        text += *byte;
        at += 2;
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> parsedTexts(std::string_view value)
{
    std::vector<std::string> texts;
    auto rest = value;
    while (!rest.empty()) {
        if (rest.front() == '"') {
            auto text = takeQuoted(rest);
            if (!text)
                return std::nullopt;
            texts.push_back(std::move(*text));
        } else {
            auto const end = std::min(rest.find(','), rest.size());
            texts.emplace_back(trimmedBlanks(rest.substr(0, end)));
            rest.remove_prefix(end);
        }
        if (rest.empty())
            break;
        if (rest.front() != ',')
            return std::nullopt;
        rest = trimmedBlanks(rest.substr(1));
    }
    return texts;
}

} // namespace

IniText::IniText(std::string_view text)
{
    // Some editors begin a file with this mark, which would hide the first key.
    if (constexpr std::string_view mark = "\xEF\xBB\xBF"; text.starts_with(mark))
        text.remove_prefix(mark.size());
    while (!text.empty()) {
        auto const end = std::min(text.find('\n'), text.size());
        auto line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        line = trimmedBlanks(line);
        if (line.empty() || line.front() == '[' || line.front() == ';' || line.front() == '#') {
            if (line.find('\0') == line.npos)
                lines_.push_back({ {}, std::string(line) });
            continue;
        }
        auto const equals = line.find('=');
        if (equals == line.npos)
            continue;
        auto const key = trimmedBlanks(line.substr(0, equals));
        if (!key.empty() && std::ranges::all_of(key, isKeyByte) && !find(key))
            lines_.push_back(
                { std::string(key), std::string(trimmedBlanks(line.substr(equals + 1))) });
    }
}

IniText::Line const* IniText::find(std::string_view key) const
{
    auto const found = std::ranges::find(lines_, key, &Line::key);
    return key.empty() || found == lines_.end() ? nullptr : &*found;
}

std::optional<bool> IniText::boolean(std::string_view key) const
{
    auto const* line = find(key);
    if (line && (line->value == "true" || line->value == "false"))
        return line->value == "true";
    return std::nullopt;
}

std::optional<double> IniText::number(std::string_view key) const
{
    auto const* line = find(key);
    if (!line)
        return std::nullopt;
    double value = 0;
    auto const* const end = line->value.data() + line->value.size();
    auto const read = std::from_chars(line->value.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end)
        return std::nullopt;
    return value;
}

std::optional<std::string> IniText::text(std::string_view key) const
{
    auto const* line = find(key);
    if (!line)
        return std::nullopt;
    if (!line->value.starts_with('"'))
        return line->value;
    std::string_view rest = line->value;
    auto text = takeQuoted(rest);
    return rest.empty() ? text : std::nullopt;
}

std::optional<std::vector<std::string>> IniText::texts(std::string_view key) const
{
    auto const* line = find(key);
    return line ? parsedTexts(line->value) : std::nullopt;
}

bool IniText::set(std::string_view key, std::string value)
{
    auto const found = std::ranges::find(lines_, key, &Line::key);
    if (found == lines_.end()) {
        lines_.push_back({ std::string(key), std::move(value) });
        return true;
    }
    if (found->value == value)
        return false;
    found->value = std::move(value);
    return true;
}

bool IniText::setBoolean(std::string_view key, bool value)
{
    return set(key, value ? "true" : "false");
}

bool IniText::setNumber(std::string_view key, double value)
{
    std::array<char, 32> digits {};
    auto const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return set(key, std::string(digits.data(), end));
}

bool IniText::setText(std::string_view key, std::string_view value)
{
    std::string quoted;
    appendQuoted(value, quoted);
    return set(key, std::move(quoted));
}

// A comma follows every text, so that a list of one can be told from a text.
bool IniText::setTexts(std::string_view key, std::vector<std::string> const& values)
{
    std::string list;
    for (auto const& value : values) {
        if (!list.empty())
            list += ' ';
        appendQuoted(value, list);
        list += ',';
    }
    return set(key, std::move(list));
}

std::string IniText::toString() const
{
    std::string text;
    for (auto const& line : lines_)
        text += line.key.empty() ? line.value + '\n' : line.key + '=' + line.value + '\n';
    return text;
}

} // namespace pixelhain
