#pragma once
#include "base/SharedBytes.h"
#include <compare>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace pixelhain {

/// Where a file or folder lies: its absolute path as bytes, exactly as the file system has them
/// (they need not be UTF-8). Cheap to copy; copies share the bytes.
class FileUrl {
public:
    /// The empty URL: no file.
    FileUrl() = default;

    /// Copies `absolutePath`; one trailing "/" is dropped, so a folder has one spelling.
    explicit FileUrl(std::string_view absolutePath);

    /// A URL whose bytes lie in storage shared by many, no further in than 4 GiB. `path` must be
    /// followed by a NUL byte, must not end in "/" (but for the root), and must stay unchanged.
    FileUrl(SharedBytes storage, std::string_view path);

    bool empty() const { return length_ == 0; }
    std::string_view path() const { return { cString(), length_ }; }

    /// The path for system calls, NUL-terminated; "" for the empty URL.
    char const* cString() const { return length_ == 0 ? "" : bytes_.data() + begin_; }

    /// The last path component; "/" for the root.
    std::string_view name() const;

    /// What follows the last "." of the name, as written; empty if there is none, if nothing
    /// follows, or if the name begins with its only "." (".profile").
    std::string_view extension() const;

    /// The folder that holds this; the root's parent is the root.
    FileUrl parent() const;
    FileUrl child(std::string_view name) const;

    /// The same place without ".", ".." and repeated "/". Links are not followed.
    FileUrl standardized() const;

    /// Whether this is `folder` or lies anywhere beneath it.
    bool isWithin(FileUrl const& folder) const;

    friend bool operator==(FileUrl const& a, FileUrl const& b) { return a.path() == b.path(); }
    friend std::strong_ordering operator<=>(FileUrl const& a, FileUrl const& b)
    {
        return a.path() <=> b.path();
    }

private:
    SharedBytes bytes_;
    std::uint32_t begin_ = 0;
    std::uint32_t length_ = 0;
};

/// What follows the last "." of a file name, by the rule of FileUrl::extension.
std::string_view extensionOf(std::string_view name);

} // namespace pixelhain

template <> struct std::hash<pixelhain::FileUrl> {
    std::size_t operator()(pixelhain::FileUrl const& url) const noexcept
    {
        return std::hash<std::string_view> {}(url.path());
    }
};
