#pragma once
#include "ports/FileSystem.h"
#include <map>
#include <string_view>

namespace pixelhain {

/// A drive in memory. Filled and emptied by a test between pieces of background work, read from
/// any thread.
class FakeDrive final : public FileSystem {
public:
    /// A folder and those above it.
    void addFolder(std::string_view path)
    {
        for (FileUrl url(path); url.path() != "/"; url = url.parent())
            entries_[url].kind = EntryKind::folder;
    }

    void addFile(FileUrl const& url, std::int64_t size = 0, Timestamp modified = distantPast)
    {
        entries_[url] = { EntryKind::file, modified, size };
    }

    /// Takes a file, or a folder with all that is in it, off the drive.
    void remove(FileUrl const& url)
    {
        std::erase_if(entries_, [&](auto const& entry) { return entry.first.isWithin(url); });
    }

    bool list(FileUrl const& folder, EntryVisitor const& visit) const override
    {
        if (!isFolder(folder))
            return false;
        for (auto const& [url, details] : entries_)
            if (url.parent() == folder)
                visit(url.name(), details.kind);
        return true;
    }

    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> files) const override
    {
        std::vector<std::optional<FileDetails>> found;
        for (auto const& file : files) {
            auto const entry = entries_.find(file);
            found.push_back(entry == entries_.end() ? std::nullopt : std::optional(entry->second));
        }
        return found;
    }

    bool isFolder(FileUrl const& url) const override
    {
        auto const entry = entries_.find(url);
        return entry != entries_.end() && entry->second.kind == EntryKind::folder;
    }

    bool exists(FileUrl const& url) const override { return entries_.contains(url); }

private:
    std::map<FileUrl, FileDetails> entries_;
};

} // namespace pixelhain
