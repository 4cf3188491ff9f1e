#pragma once
#include "ports/FileSystem.h"
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
    FakeFileSystem();
    ~FakeFileSystem() override;

    bool tellsKinds = true; ///< whether a listing says what each entry is
    std::set<FileUrl> unreadable; ///< folders that cannot be opened
    std::set<FileUrl> vanishing; ///< listed, but gone when they are looked at
    std::function<void()> afterDetails; ///< called when files have been looked at

    /// Each also makes the folders above it.
    void addFolder(std::string_view path) { put(FileUrl(path), { EntryKind::folder, {}, 0 }); }
    void addFile(FileUrl const& url, std::int64_t size = 0, Timestamp modified = distantPast);

    /// A link, a pipe, a device: whatever is neither file nor folder.
    void addOther(FileUrl const& url, EntryKind kind) { put(url, { kind, {}, 0 }); }

    /// Gives what lies there another date.
    void setModified(FileUrl const& url, Timestamp modified);

    /// Takes away what lies there, and what lies in it.
    void remove(FileUrl const& url);

    /// Puts a file's copy at another place; false if there is no such file.
    bool duplicate(FileUrl const& file, FileUrl const& destination);

    bool list(FileUrl const& folder, EntryVisitor const& visit) const override;

    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> files) const override;

    bool isFolder(FileUrl const& url) const override;

    bool exists(FileUrl const& url) const override;

    /// Every file and folder there is.
    std::map<FileUrl, FileDetails> everything() const;

    std::vector<FileUrl> listings() const { return copyOf(listings_); } ///< folders, in order
    std::vector<FileUrl> questions() const { return copyOf(questions_); } ///< files, in order

private:
    struct Entry {
        FileDetails details;
        std::size_t number = 0; ///< entries are counted as they are put there
    };
    using Children = std::map<std::size_t, std::pair<FileUrl, EntryKind>>;

    void put(FileUrl const& url, FileDetails const& details);

    std::optional<FileDetails> detailsOf(FileUrl const& file) const;

    Children childrenOf(FileUrl const& folder) const;

    std::vector<FileUrl> copyOf(std::vector<FileUrl> const& record) const;

    mutable std::mutex lock_;
    std::map<FileUrl, Entry> entries_;
    std::size_t count_ = 0;
    mutable std::vector<FileUrl> listings_;
    mutable std::vector<FileUrl> questions_;
};

} // namespace pixelhain
