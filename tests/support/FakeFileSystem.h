#pragma once
#include "ports/FileSystem.h"
#include <algorithm>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// A drive in memory. A folder yields its entries in the order in which they were put there.
/// Records what it was asked. Thread-safe.
class FakeFileSystem final : public FileSystem {
public:
    bool tellsKinds = true; ///< whether a listing says what each entry is
    std::set<FileUrl> unreadable; ///< folders that cannot be opened
    std::set<FileUrl> vanishing; ///< listed, but gone when they are looked at

    void addFolder(std::string_view path) { addFolder(FileUrl(path)); }
    void addFolder(FileUrl const& url) { put(url.standardized(), { EntryKind::folder, {}, 0 }); }

    /// Also makes the folders above it.
    void addFile(FileUrl const& url, std::int64_t size = 0, Timestamp modified = Timestamp())
    {
        put(url.standardized(), { EntryKind::file, modified, size });
    }

    /// A link, a pipe, a device: whatever is neither file nor folder.
    void addOther(FileUrl const& url, EntryKind kind) { put(url.standardized(), { kind, {}, 0 }); }

    /// Takes away what lies there, and what lies in it.
    void remove(FileUrl const& url)
    {
        std::scoped_lock const guard(lock_);
        std::erase_if(entries_, [&](Entry const& entry) { return entry.first.isWithin(url); });
    }

    bool list(FileUrl const& folder, EntryVisitor const& visit) const override
    {
        auto const place = folder.standardized();
        if (!isFolder(place) || unreadable.contains(place))
            return false;
        for (auto const& [url, details] : everything(listings_, folder))
            if (url != place && url.parent() == place)
                visit(url.name(), tellsKinds ? details.kind : EntryKind::unknown);
        return true;
    }

    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> files) const override
    {
        std::vector<std::optional<FileDetails>> answers;
        for (auto const& file : files) {
            auto const entries = everything(questions_, file);
            auto const found = std::ranges::find(entries, file.standardized(), &Entry::first);
            if (found == entries.end() || vanishing.contains(file))
                answers.emplace_back();
            else
                answers.emplace_back(found->second);
        }
        return answers;
    }

    bool isFolder(FileUrl const& url) const override
    {
        auto const entries = everything();
        auto const found = std::ranges::find(entries, url.standardized(), &Entry::first);
        return url == FileUrl("/")
            || (found != entries.end() && found->second.kind == EntryKind::folder);
    }

    bool exists(FileUrl const& url) const override
    {
        auto const entries = everything();
        return url == FileUrl("/")
            || std::ranges::find(entries, url.standardized(), &Entry::first) != entries.end();
    }

    std::vector<FileUrl> listings() const { return copyOf(listings_); } ///< folders, in order
    std::vector<FileUrl> questions() const { return copyOf(questions_); } ///< files, in order

private:
    using Entry = std::pair<FileUrl, FileDetails>;

    void put(FileUrl const& url, FileDetails const& details)
    {
        if (url == FileUrl("/") || (details.kind == EntryKind::folder && isFolder(url)))
            return;
        if (!exists(url.parent()))
            addFolder(url.parent());
        std::scoped_lock const guard(lock_);
        std::erase_if(entries_, [&](Entry const& entry) { return entry.first == url; });
        entries_.emplace_back(url, details);
    }

    std::vector<Entry> everything() const
    {
        std::scoped_lock const guard(lock_);
        return entries_;
    }
    std::vector<Entry> everything(std::vector<FileUrl>& record, FileUrl const& asked) const
    {
        std::scoped_lock const guard(lock_);
        record.push_back(asked);
        return entries_;
    }
    std::vector<FileUrl> copyOf(std::vector<FileUrl> const& record) const
    {
        std::scoped_lock const guard(lock_);
        return record;
    }

    mutable std::mutex lock_;
    std::vector<Entry> entries_;
    mutable std::vector<FileUrl> listings_;
    mutable std::vector<FileUrl> questions_;
};

} // namespace pixelhain
