#include "qt/ports/FileUrlText.h"
#include "base/Text.h"
#include <QFile>
#include <algorithm>
#include <charconv>

namespace pixelhain {

namespace {

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
            continue;
        }
        auto const two = text.substr(at + 1, 2);
        auto const* const end = two.data() + two.size();
        unsigned value = 0;
        if (two.size() != 2 || std::from_chars(two.data(), end, value, 16).ptr != end || value == 0)
            return std::nullopt;
        bytes += static_cast<char>(value);
        at += 2;
    }
    return bytes;
}

} // namespace

std::optional<FileUrl> fileUrlFromUri(std::string_view uri)
{
    constexpr std::string_view scheme = "file:";
    if (asciiLowercased(uri.substr(0, scheme.size())) != scheme)
        return std::nullopt;
    uri.remove_prefix(scheme.size());
    if (uri.starts_with("//")) {
        uri.remove_prefix(2);
        auto const slash = std::min(uri.find('/'), uri.size());
        auto const host = asciiLowercased(uri.substr(0, slash));
        if (!host.empty() && host != "localhost")
            return std::nullopt;
        uri.remove_prefix(slash);
    }
    auto const path = percentDecoded(uri.substr(0, uri.find_first_of("?#")));
    if (!path || !path->starts_with('/'))
        return std::nullopt;
    return FileUrl(*path);
}

std::string uriOf(FileUrl const& url)
{
    constexpr std::string_view plain = "-_.!~*'()/&=:@+$,";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri = "file://";
    for (char const byte : url.path()) {
        bool const isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
        if (isLetter || (byte >= '0' && byte <= '9') || plain.find(byte) != plain.npos) {
            uri += byte;
            continue;
        }
        auto const value = static_cast<unsigned char>(byte);
        uri += '%';
        uri += digits[value / 16];
        uri += digits[value % 16];
    }
    return uri;
}

std::vector<FileUrl> fileUrlsFromUriList(std::string_view list)
{
    std::vector<FileUrl> urls;
    while (!list.empty()) {
        auto const end = std::min(list.find_first_of("\r\n"), list.size());
        if (auto const url = fileUrlFromUri(trimmedBlanks(list.substr(0, end))))
            urls.push_back(*url);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return urls;
}

std::optional<FileUrl> fileUrlFromArgument(std::string_view argument, FileUrl const& currentFolder)
{
    if (argument.empty())
        return std::nullopt;
    if (argument.starts_with('/'))
        return FileUrl(argument).standardized();
    if (auto const url = fileUrlFromUri(argument))
        return url->standardized();
    return currentFolder.child(argument).standardized();
}

QString shownText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

FileUrl fileUrlFromDialog(QString const& path)
{
    auto const bytes = QFile::encodeName(path);
    return FileUrl({ bytes.constData(), static_cast<std::size_t>(bytes.size()) });
}

} // namespace pixelhain
