#include "model/Scanning.h"
#include "model/FolderNames.h"
#include "model/PathArena.h"
#include "model/PhotoTest.h"
#include "ports/FileSystem.h"
#include <algorithm>
#include <future>
#include <iterator>
#include <optional>
#include <string>
#include <unordered_set>

namespace pixelhain {

namespace {

using Details = std::vector<std::optional<FileDetails>>;

// Lists folders and gathers what may be a photo by its name, before anything is asked about it.
class Collector {
public:
    explicit Collector(ScanTools const& tools)
        : tools_(tools)
    {
    }

    void collect(FileUrl const& top, bool recursive)
    {
        recursive_ = recursive;
        std::vector<FileUrl> waiting { top };
        while (!waiting.empty()) {
            auto const folder = std::move(waiting.back());
            waiting.pop_back();
            list(folder);
            // The first subfolder comes out first.
            waiting.insert(waiting.end(), std::make_move_iterator(subfolders_.rbegin()),
                std::make_move_iterator(subfolders_.rend()));
        }
    }

    std::vector<FileUrl> take() { return std::move(candidates_); }

private:
    void list(FileUrl const& folder)
    {
        subfolders_.clear();
        unknown_.clear();
        auto const visit = [&](std::string_view name, EntryKind kind) {
            if (!isHiddenName(name))
                visitEntry(folder, name, kind);
        };
        // A folder that cannot be read holds no photos.
        if (tools_.files.list(folder, visit))
            enterUnknown();
    }

    void visitEntry(FileUrl const& folder, std::string_view name, EntryKind kind)
    {
        bool const mayBeFile = kind == EntryKind::file || kind == EntryKind::unknown;
        bool const mayBeFolder = kind == EntryKind::folder || kind == EntryKind::unknown;
        if (mayBeFile && isImageName(name))
            candidates_.push_back(arena_.add(folder.path(), name));
        if (recursive_ && mayBeFolder && !isPackageName(name))
            (kind == EntryKind::folder ? subfolders_ : unknown_).push_back(folder.child(name));
    }

    // File systems that do not tell kinds in their listing are asked once per folder.
    void enterUnknown()
    {
        if (unknown_.empty())
            return;
        auto const details = tools_.files.details(unknown_);
        for (std::size_t i = 0; i < unknown_.size(); ++i)
            if (details[i] && details[i]->kind == EntryKind::folder)
                subfolders_.push_back(std::move(unknown_[i]));
    }

    // Most neighbours share their extension; its answer is at hand without a lock.
    bool isImageName(std::string_view name)
    {
        auto const extension = extensionOf(name);
        if (extension != lastExtension_ || !lastAnswer_) {
            lastAnswer_ = tools_.photoTest.isImageName(name);
            lastExtension_ = extension;
        }
        return *lastAnswer_;
    }

    ScanTools const& tools_;
    bool recursive_ = false;
    PathArena arena_;
    std::vector<FileUrl> candidates_;
    std::vector<FileUrl> subfolders_;
    std::vector<FileUrl> unknown_;
    std::string lastExtension_;
    std::optional<bool> lastAnswer_;
};

bool isPhoto(std::optional<FileDetails> const& details)
{
    return details && details->kind == EntryKind::file;
}

std::vector<PhotoItem> photosOf(std::vector<FileUrl> urls, Details const& details)
{
    std::vector<PhotoItem> items;
    items.reserve(urls.size());
    for (std::size_t i = 0; i < urls.size(); ++i)
        if (isPhoto(details[i]))
            items.push_back({ std::move(urls[i]), details[i]->modified, details[i]->size });
    return items;
}

// Two scans can meet the same file only if one begins at the other's folder or inside it.
bool mayOverlap(std::span<FileUrl const> folders)
{
    for (std::size_t i = 0; i < folders.size(); ++i)
        for (std::size_t j = 0; j < folders.size(); ++j)
            if (i != j && folders[i].isWithin(folders[j]))
                return true;
    return false;
}

void dropRepeated(std::vector<FileUrl>& urls)
{
    std::unordered_set<std::string_view> seen;
    seen.reserve(urls.size());
    std::erase_if(urls, [&](FileUrl const& url) { return !seen.insert(url.path()).second; });
}

} // namespace

std::vector<PhotoItem> scanFolder(ScanTools const& tools, FileUrl const& folder, bool recursive)
{
    Collector collector(tools);
    collector.collect(folder, recursive);
    auto urls = collector.take();
    auto const details = tools.files.details(urls);
    return photosOf(std::move(urls), details);
}

ScanResult scanFolders(ScanTools const& tools, std::span<FileUrl const> folders, bool recursive)
{
    Collector collector(tools);
    for (auto const& folder : folders)
        collector.collect(folder, recursive);
    auto urls = collector.take();
    if (mayOverlap(folders))
        dropRepeated(urls);

    // Order needs names only, so it is found while the file system is asked for the rest. Without
    // a free thread the question is asked afterwards.
    auto asked = std::async([&] { return tools.files.details(urls); });
    ScanResult result;
    result.index = PhotoIndex(std::span<FileUrl const>(urls), tools.textOrder);
    auto const details = asked.get();
    if (!std::ranges::all_of(details, isPhoto))
        result.index.removeIf([&](std::size_t i) { return !isPhoto(details[i]); });
    result.items = photosOf(std::move(urls), details);
    return result;
}

} // namespace pixelhain
