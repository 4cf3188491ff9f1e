#pragma once
#include "ports/FileSystem.h"
#include <algorithm>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string_view>
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
    std::function<void()> afterDetails; ///< called when files have been looked at

    /// Each also makes the folders above it.
    void addFolder(std::string_view path) { put(FileUrl(path), { EntryKind::folder, {}, 0 }); }
    void addFile(FileUrl const& url, std::int64_t size = 0, Timestamp modified = distantPast)
    {
        put(url, { EntryKind::file, modified, size });
    }

    /// A link, a pipe, a device: whatever is neither file nor folder.
    void addOther(FileUrl const& url, EntryKind kind) { put(url, { kind, {}, 0 }); }

    /// Gives what lies there another date.
    void setModified(FileUrl const& url, Timestamp modified)
    {
        std::scoped_lock const guard(lock_);
        entries_.at(url).details.modified = modified;
    }

    /// Takes away what lies there, and what lies in it.
    void remove(FileUrl const& url)
    {
        std::scoped_lock const guard(lock_);
        std::erase_if(entries_, [&](auto const& entry) { return entry.first.isWithin(url); });
    }

    /// Puts a file's copy at another place; false if there is no such file.
    bool duplicate(FileUrl const& file, FileUrl const& destination)
    {
        std::optional<FileDetails> details;
        {
            std::scoped_lock const guard(lock_);
            if (auto const found = entries_.find(file); found != entries_.end())
                details = found->second.details;
        }
        if (details)
            put(destination, *details);
        return details.has_value();
    }

    bool list(FileUrl const& folder, EntryVisitor const& visit) const override
    {
        auto const place = folder.standardized();
        if (!isFolder(place) || unreadable.contains(place))
            return false;
        for (auto const& [number, child] : childrenOf(folder))
            visit(child.first.name(), tellsKinds ? child.second : EntryKind::unknown);
        return true;
    }

    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> files) const override
    {
        std::vector<std::optional<FileDetails>> answers;
        for (auto const& file : files)
            answers.push_back(detailsOf(file));
        if (auto const act = afterDetails)
            act();
        return answers;
    }

    bool isFolder(FileUrl const& url) const override
    {
        std::scoped_lock const guard(lock_);
        auto const found = entries_.find(url.standardized());
        return url == FileUrl("/")
            || (found != entries_.end() && found->second.details.kind == EntryKind::folder);
    }

    bool exists(FileUrl const& url) const override
    {
        std::scoped_lock const guard(lock_);
        return url == FileUrl("/") || entries_.contains(url.standardized());
    }

    /// Every file and folder there is.
    std::map<FileUrl, FileDetails> everything() const
    {
        std::scoped_lock const guard(lock_);
        std::map<FileUrl, FileDetails> all;
        for (auto const& [url, entry] : entries_)
            all.emplace(url, entry.details);
        return all;
    }

    std::vector<FileUrl> listings() const { return copyOf(listings_); } ///< folders, in order
    std::vector<FileUrl> questions() const { return copyOf(questions_); } ///< files, in order

private:
    struct Entry {
        FileDetails details;
        std::size_t number = 0; ///< entries are counted as they are put there
    };
    using Children = std::map<std::size_t, std::pair<FileUrl, EntryKind>>;

    void put(FileUrl const& url, FileDetails const& details)
    {
        auto const place = url.standardized();
        if (place == FileUrl("/") || (details.kind == EntryKind::folder && isFolder(place)))
            return;
        put(place.parent(), { EntryKind::folder, {}, 0 });
        std::scoped_lock const guard(lock_);
        entries_[place] = { details, ++count_ };
    }

    std::optional<FileDetails> detailsOf(FileUrl const& file) const
    {
        std::scoped_lock const guard(lock_);
        questions_.push_back(file);
        auto const found = entries_.find(file.standardized());
        if (found == entries_.end() || vanishing.contains(file))
            return std::nullopt;
        return found->second.details;
    }

    Children childrenOf(FileUrl const& folder) const
    {
        std::scoped_lock const guard(lock_);
        listings_.push_back(folder);
        Children children;
        for (auto const& [url, entry] : entries_)
            if (url.parent() == folder.standardized())
                children.try_emplace(entry.number, url, entry.details.kind);
        return children;
    }

    std::vector<FileUrl> copyOf(std::vector<FileUrl> const& record) const
    {
        std::scoped_lock const guard(lock_);
        return record;
    }

    mutable std::mutex lock_;
    std::map<FileUrl, Entry> entries_;
    std::size_t count_ = 0;
    mutable std::vector<FileUrl> listings_;
    mutable std::vector<FileUrl> questions_;
};

} // namespace pixelhain
