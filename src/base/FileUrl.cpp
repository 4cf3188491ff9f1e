#include "base/FileUrl.h"
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

namespace {

SharedBytes copyOf(std::string_view bytes)
{
    SharedBytes storage(bytes.size() + 1);
    if (!bytes.empty())
        std::memcpy(storage.data(), bytes.data(), bytes.size());
    storage.data()[bytes.size()] = '\0';
    return storage;
}

} // namespace

FileUrl::FileUrl(std::string_view absolutePath)
{
    if (absolutePath.size() > 1 && absolutePath.back() == '/')
        absolutePath.remove_suffix(1);
    bytes_ = copyOf(absolutePath);
    length_ = static_cast<std::uint32_t>(absolutePath.size());
}

FileUrl::FileUrl(SharedBytes storage, std::string_view path)
    : bytes_(std::move(storage))
    , begin_(static_cast<std::uint32_t>(path.data() - bytes_.data()))
    , length_(static_cast<std::uint32_t>(path.size()))
{
}

std::string_view FileUrl::name() const
{
    auto const all = path();
    if (all.size() <= 1)
        return all;
    auto const slash = all.rfind('/');
    return slash == std::string_view::npos ? all : all.substr(slash + 1);
}

std::string_view FileUrl::extension() const
{
    return extensionOf(name());
}

FileUrl FileUrl::parent() const
{
    auto const all = path();
    auto const slash = all.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    return FileUrl(all.substr(0, slash == 0 ? 1 : slash));
}

FileUrl FileUrl::child(std::string_view name) const
{
    std::string joined(path());
    if (joined.empty() || joined.back() != '/')
        joined += '/';
    joined += name;
    return FileUrl(joined);
}

FileUrl FileUrl::standardized() const
{
    std::vector<std::string_view> parts;
    auto rest = path();
    if (rest.empty())
        return {};
    while (!rest.empty()) {
        auto const slash = rest.find('/');
        auto const part = rest.substr(0, slash);
        rest.remove_prefix(slash == std::string_view::npos ? rest.size() : slash + 1);
        if (part.empty() || part == ".")
            continue;
        if (part != "..")
            parts.push_back(part);
        else if (!parts.empty())
            parts.pop_back();
    }
    std::string clean;
    for (auto const part : parts)
        clean.append("/").append(part);
    return FileUrl(clean.empty() ? "/" : clean);
}

bool FileUrl::isWithin(FileUrl const& folder) const
{
    auto const mine = path();
    auto const top = folder.path();
    if (top.empty() || !mine.starts_with(top))
        return false;
    return mine.size() == top.size() || top.back() == '/' || mine[top.size()] == '/';
}

std::string_view extensionOf(std::string_view name)
{
    auto const dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size())
        return {};
    return name.substr(dot + 1);
}

} // namespace pixelhain
