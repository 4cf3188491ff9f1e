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

// So many files are asked about at a time; what is answered takes as much memory as they do.
constexpr std::size_t filesPerQuestion = 65'536;

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

    /// Whether each of them is known to be a file.
    bool areFiles() const { return areFiles_; }

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
        if (mayBeFile && isImageName(name)) {
            candidates_.push_back(arena_.add(folder.path(), name));
            areFiles_ = areFiles_ && kind == EntryKind::file;
        }
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
    bool areFiles_ = true;
    PathArena arena_;
    std::vector<FileUrl> candidates_;
    std::vector<FileUrl> subfolders_;
    std::vector<FileUrl> unknown_;
    std::string lastExtension_;
    std::optional<bool> lastAnswer_;
};

// What the file system says of listed files.
struct Looks {
    std::vector<PhotoItem> items;
    std::vector<std::size_t> goneAt; ///< positions among the listed

    void add(std::span<FileUrl const> urls, std::size_t from, FileSystem const& files)
    {
        auto const asked = urls.subspan(from, std::min(filesPerQuestion, urls.size() - from));
        auto const details = files.details(asked);
        for (std::size_t i = 0; i < asked.size(); ++i) {
            if (auto const& found = details[i]; found && found->kind == EntryKind::file)
                items.push_back({ asked[i], found->modified, found->size });
            else
                goneAt.push_back(from + i);
        }
    }
};

Looks lookAt(std::span<FileUrl const> urls, FileSystem const& files)
{
    Looks looks;
    looks.items.reserve(urls.size());
    for (std::size_t from = 0; from < urls.size(); from += filesPerQuestion)
        looks.add(urls, from, files);
    return looks;
}

ScanResult namesAlone(std::span<FileUrl const> urls, PhotoIndex const& index)
{
    ScanResult names;
    names.index = index;
    names.items.reserve(urls.size());
    for (auto const& url : urls)
        names.items.push_back({ url, distantPast, PhotoItem::notYetKnown });
    return names;
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
    return lookAt(collector.take(), tools.files).items;
}

ScanResult scanFolders(ScanTools const& tools, std::span<FileUrl const> folders, bool recursive,
    TellNames const& tellNames)
{
    Collector collector(tools);
    for (auto const& folder : folders)
        collector.collect(folder, recursive);
    auto urls = collector.take();
    if (mayOverlap(folders))
        dropRepeated(urls);

    // Order needs names only, so it is found while the file system is asked for the rest. Without a
    // free thread the question is asked below, after the names were told.
    auto looking = std::async([&] { return lookAt(urls, tools.files); });
    ScanResult result;
    result.index = PhotoIndex(std::span<FileUrl const>(urls), tools.textOrder);
    if (tellNames && collector.areFiles()
        && looking.wait_for(tools.patience) != std::future_status::ready)
        tellNames(namesAlone(urls, result.index));
    auto looks = looking.get();
    result.items = std::move(looks.items);
    if (!looks.goneAt.empty()) {
        std::vector<bool> isGone(urls.size());
        for (auto const at : looks.goneAt) {
            isGone[at] = true;
            result.gone.push_back(urls[at]);
        }
        result.index.removeIf([&](std::size_t i) { return isGone[i]; });
    }
    return result;
}

} // namespace pixelhain
