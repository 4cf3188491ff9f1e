#include "posix/TrashInfo.h"
#include "base/FileUrl.h"
#include <algorithm>
#include <charconv>

namespace pixelhain {

namespace {

// What is longer is hardly an extension, and would leave little of the name.
constexpr std::size_t longestExtension = 32;

bool standsForItself(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || (byte >= '0' && byte <= '9')
        || std::string_view("/-._~").find(byte) != std::string::npos;
}

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string_view shortened(std::string_view text, std::size_t longest)
{
    if (text.size() <= longest)
        return text;
    auto end = longest;
    // Names in other encodings may have no beginning of a character near.
    constexpr std::size_t longestCharacter = 4;
    while (end > 0 && longest - end < longestCharacter && continuesCharacter(text[end]))
        --end;
    return text.substr(0, continuesCharacter(text[end]) ? longest : end);
}

// A percent sign that begins no byte stands for itself.
std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    while (!text.empty()) {
        auto const digits = text.substr(1, 2);
        auto const* const end = digits.data() + digits.size();
        unsigned char byte = 0;
        bool const isEncoded = text.front() == '%' && digits.size() == 2
            && std::from_chars(digits.data(), end, byte, 16).ptr == end;
        decoded += isEncoded ? static_cast<char>(byte) : text.front();
        text.remove_prefix(isEncoded ? 3 : 1);
    }
    return decoded;
}

} // namespace

std::string percentEncoded(std::string_view path)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(path.size());
    for (char const byte : path) {
        if (standsForItself(byte)) {
            encoded += byte;
            continue;
        }
        auto const value = static_cast<unsigned char>(byte);
        encoded += '%';
        encoded += digits[value >> 4U];
        encoded += digits[value & 0xFU];
    }
    return encoded;
}

std::optional<std::string> pathIn(std::string_view trashInfoText)
{
    constexpr std::string_view key = "\nPath=";
    auto const at = trashInfoText.find(key);
    if (at == std::string_view::npos)
        return std::nullopt;
    auto const value = trashInfoText.substr(at + key.size());
    return percentDecoded(value.substr(0, value.find_first_of("\r\n")));
}

std::string trashInfoText(std::string_view path, std::time_t now)
{
    std::tm local {};
    char date[32] = "";
    if (::localtime_r(&now, &local) != nullptr)
        std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + date + "\n";
}

std::string trashName(std::string_view name, unsigned number, std::size_t longest)
{
    auto extension = extensionOf(name);
    if (extension.size() > longestExtension)
        extension = {};
    auto const base = name.substr(0, name.size() - extension.size() - (extension.empty() ? 0 : 1));
    std::string tail = number > 1 ? " " + std::to_string(number) : "";
    if (!extension.empty())
        tail.append(".").append(extension);
    return std::string(shortened(base, longest - std::min(longest, tail.size()))) + tail;
}

} // namespace pixelhain
