#include "support/FakeFileSystem.h"

namespace pixelhain {

FakeFileSystem::FakeFileSystem() = default;
FakeFileSystem::~FakeFileSystem() = default;

void FakeFileSystem::addFile(FileUrl const& url, std::int64_t size, Timestamp modified)
{
    put(url, { EntryKind::file, modified, size });
}

void FakeFileSystem::setModified(FileUrl const& url, Timestamp modified)
{
    std::scoped_lock const guard(lock_);
    entries_.at(url).details.modified = modified;
}

void FakeFileSystem::remove(FileUrl const& url)
{
    std::scoped_lock const guard(lock_);
    std::erase_if(entries_, [&](auto const& entry) { return entry.first.isWithin(url); });
}

bool FakeFileSystem::duplicate(FileUrl const& file, FileUrl const& destination)
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

bool FakeFileSystem::list(FileUrl const& folder, EntryVisitor const& visit) const
{
    auto const place = folder.standardized();
    if (!isFolder(place) || unreadable.contains(place))
        return false;
    for (auto const& [number, child] : childrenOf(folder))
        visit(child.first.name(), tellsKinds ? child.second : EntryKind::unknown);
    return true;
}

std::vector<std::optional<FileDetails>> FakeFileSystem::details(
    std::span<FileUrl const> files) const
{
    std::vector<std::optional<FileDetails>> answers;
    for (auto const& file : files)
        answers.push_back(detailsOf(file));
    if (auto const act = afterDetails)
        act();
    return answers;
}

bool FakeFileSystem::isFolder(FileUrl const& url) const
{
    std::scoped_lock const guard(lock_);
    auto const found = entries_.find(url.standardized());
    return url == FileUrl("/")
        || (found != entries_.end() && found->second.details.kind == EntryKind::folder);
}

bool FakeFileSystem::exists(FileUrl const& url) const
{
    std::scoped_lock const guard(lock_);
    return url == FileUrl("/") || entries_.contains(url.standardized());
}

std::map<FileUrl, FileDetails> FakeFileSystem::everything() const
{
    std::scoped_lock const guard(lock_);
    std::map<FileUrl, FileDetails> all;
    for (auto const& [url, entry] : entries_)
        all.emplace(url, entry.details);
    return all;
}

void FakeFileSystem::put(FileUrl const& url, FileDetails const& details)
{
    auto const place = url.standardized();
    if (place == FileUrl("/") || (details.kind == EntryKind::folder && isFolder(place)))
        return;
    put(place.parent(), { EntryKind::folder, {}, 0 });
    std::scoped_lock const guard(lock_);
    entries_[place] = { details, ++count_ };
}

std::optional<FileDetails> FakeFileSystem::detailsOf(FileUrl const& file) const
{
    std::scoped_lock const guard(lock_);
    questions_.push_back(file);
    auto const found = entries_.find(file.standardized());
    if (found == entries_.end() || vanishing.contains(file))
        return std::nullopt;
    return found->second.details;
}

FakeFileSystem::Children FakeFileSystem::childrenOf(FileUrl const& folder) const
{
    std::scoped_lock const guard(lock_);
    listings_.push_back(folder);
    Children children;
    for (auto const& [url, entry] : entries_)
        if (url.parent() == folder.standardized())
            children.try_emplace(entry.number, url, entry.details.kind);
    return children;
}

std::vector<FileUrl> FakeFileSystem::copyOf(std::vector<FileUrl> const& record) const
{
    std::scoped_lock const guard(lock_);
    return record;
}

} // namespace pixelhain
