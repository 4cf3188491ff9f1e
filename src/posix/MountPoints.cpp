#include "posix/MountPoints.h"
#include "posix/FolderHandle.h"
#include <array>
#include <fcntl.h>
#include <utility>

namespace pixelhain {

namespace {

std::string_view takeField(std::string_view& line)
{
    auto const end = line.find(' ');
    auto const field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return field;
}

// Blanks, line breaks and backslashes are written as a backslash and three octal digits.
std::string unescaped(std::string_view text)
{
    auto const isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        bool const isEscape = text[at] == '\\' && at + 3 < text.size() && isOctal(text[at + 1])
            && isOctal(text[at + 2]) && isOctal(text[at + 3]);
        if (!isEscape) {
            plain += text[at];
            continue;
        }
        int const code
            = (text[at + 1] - '0') * 64 + (text[at + 2] - '0') * 8 + (text[at + 3] - '0');
        plain += static_cast<char>(code);
        at += 3;
    }
    return plain;
}

} // namespace

std::string mountsWithin(std::string_view mountinfo, FileUrl const& top)
{
    std::string found;
    while (!mountinfo.empty()) {
        auto const end = mountinfo.find('\n');
        auto line = mountinfo.substr(0, end);
        mountinfo.remove_prefix(end == std::string_view::npos ? mountinfo.size() : end + 1);
        auto const number = takeField(line);
        takeField(line); // the mount above
        takeField(line); // the device
        takeField(line); // the folder of the file system that is mounted
        auto const place = unescaped(takeField(line));
        if (!place.empty() && FileUrl(place).isWithin(top))
            found.append(number).append(" ").append(place).append("\n");
    }
    return found;
}

MountPoints::MountPoints(FileUrl top)
    : top_(std::move(top))
    , list_(
          uninterrupted([] { return ::open("/proc/thread-self/mountinfo", O_RDONLY | O_CLOEXEC); }))
    , seen_(mountsWithin(read(), top_))
{
}

std::string MountPoints::read() const
{
    std::string text;
    if (!list_ || ::lseek(list_.get(), 0, SEEK_SET) < 0)
        return text;
    std::array<char, 4096> block;
    for (;;) {
        auto const used
            = uninterrupted([&] { return ::read(list_.get(), block.data(), block.size()); });
        if (used <= 0)
            return text;
        text.append(block.data(), static_cast<std::size_t>(used));
    }
}

bool MountPoints::haveChanged()
{
    auto now = mountsWithin(read(), top_);
    return std::exchange(seen_, now) != now;
}

} // namespace pixelhain
