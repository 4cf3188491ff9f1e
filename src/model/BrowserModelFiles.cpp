#include "model/BrowserModel.h"
#include "model/FileJobs.h"
#include "model/Messages.h"
#include "model/SelectionRules.h"
#include "model/Settings.h"
#include "ports/Clipboard.h"
#include "ports/MainWindow.h"
#include "ports/Panels.h"
#include "ports/Workspace.h"
#include <utility>

namespace pixelhain {

// What commands do when their turn comes. Each does nothing if nothing is left for it to do.
struct BrowserModel::FileChanges {
    BrowserModel& model;

    std::optional<CommandTargets> targets() const;
    std::vector<FileUrl> photosNow() const;
    void trash(std::vector<FileUrl> photos);
    void trashed(TrashResult result);
    void undo();
    void undone(RestoreResult result);
    void askForFolder(std::vector<FileUrl> photos, Transfer transfer);
    void transfer(std::vector<FileUrl> photos, FileUrl const& target, Transfer transfer);
};

void BrowserModel::trashTargets()
{
    if (window_ && window_->isEditingText())
        return;
    auto targets = FileChanges { *this }.targets();
    if (!targets)
        return;
    auto const begin = [this](auto photos) { FileChanges { *this }.trash(std::move(photos)); };
    fileWork_.give({ std::move(*targets), begin, true });
}

void BrowserModel::trash(std::vector<FileUrl> urls)
{
    auto const begin = [this](auto photos) { FileChanges { *this }.trash(std::move(photos)); };
    fileWork_.give({ { std::move(urls), std::nullopt }, begin, true });
}

void BrowserModel::undoTrash()
{
    fileWork_.give({ {}, [this](auto const&) { FileChanges { *this }.undo(); } });
}

// What is meant stands unless something under way takes photos away; the panel need not wait for a
// long copy.
void BrowserModel::moveOrCopyTargets(Transfer transfer)
{
    auto targets = FileChanges { *this }.targets();
    if (!targets)
        return;
    auto const ask = [this, transfer](std::vector<FileUrl> photos) {
        FileChanges { *this }.askForFolder(std::move(photos), transfer);
    };
    if (fileWork_.takesPhotosAway())
        fileWork_.give({ std::move(*targets), ask });
    else
        ask(targets->photosNow());
}

// With nothing in the viewer and nothing marked the photo under the cursor is meant, and so it is
// once commands before this one have taken all the marked ones away; not while others stay marked
// that cannot be seen. While a search is under way nothing is: it may hide what is seen and marked,
// and commands that mark others may wait for it.
std::optional<CommandTargets> BrowserModel::FileChanges::targets() const
{
    if (auto const photo = model.urlAt(model.viewerIndex))
        return CommandTargets { {}, photo };
    if (model.photos_.isUnderWay()) {
        if (model.window_)
            model.window_->beep();
        return std::nullopt;
    }
    CommandTargets targets { markedPhotos(model.selection, *model.items), std::nullopt };
    if (targets.photos.size() == model.selection->size())
        targets.current = model.urlAt(model.cursor);
    return targets;
}

std::vector<FileUrl> BrowserModel::FileChanges::photosNow() const
{
    auto const now = targets();
    return now ? now->photosNow() : std::vector<FileUrl> {};
}

void BrowserModel::FileChanges::trash(std::vector<FileUrl> photos)
{
    if (photos.empty())
        return;
    auto const total = photos.size();
    model.leaving_ = photos;
    auto const work = [&operations = model.ports_.operations, photos = std::move(photos)](
                          FileRun& run) { return trashFiles(operations, photos, run); };
    model.fileWork_.run(total, work,
        [&model = model](TrashResult result) { FileChanges { model }.trashed(std::move(result)); });
}

void BrowserModel::FileChanges::trashed(TrashResult result)
{
    model.leaving_.clear();
    if (result.trashed.empty() && result.failed == 0)
        return; // cancelled before the first file: what could be undone still can
    UrlSet removed;
    for (auto const& photo : result.trashed)
        removed.insert(photo.original);
    auto const count = result.trashed.size();
    model.lastTrashed_ = std::move(result.trashed);
    model.canUndoTrash = !model.lastTrashed_.empty();
    model.removeItems(removed);
    model.showStatus(messages::trashed(count, result.failed));
}

void BrowserModel::FileChanges::undo()
{
    if (model.lastTrashed_.empty())
        return;
    auto const work = [&operations = model.ports_.operations, trashed = model.lastTrashed_](
                          FileRun& run) { return restoreFiles(operations, trashed, run); };
    model.fileWork_.run(model.lastTrashed_.size(), work, [&model = model](RestoreResult result) {
        FileChanges { model }.undone(std::move(result));
    });
}

void BrowserModel::FileChanges::undone(RestoreResult result)
{
    model.lastTrashed_ = std::move(result.left);
    model.canUndoTrash = !model.lastTrashed_.empty();
    model.countsVersion = model.countsVersion + 1;
    model.showStatus(messages::restored(result.restored));
    model.startScan();
}

void BrowserModel::FileChanges::askForFolder(std::vector<FileUrl> photos, Transfer transfer)
{
    if (photos.empty())
        return;
    auto const last = LastFolders::target(model.ports_.preferences);
    FolderPanelRequest const request { std::string(messages::transferButton(transfer)),
        messages::transferQuestion(photos.size(), transfer), last ? last : *model.folder, true };
    auto const chosen = [&model = model, alive = std::weak_ptr(model.alive_),
                            photos = std::move(photos), transfer](FileUrl const& target) {
        if (alive.expired())
            return;
        LastFolders::writeTarget(model.ports_.preferences, target);
        auto const begin = [&model, target, transfer](auto files) {
            FileChanges { model }.transfer(std::move(files), target, transfer);
        };
        model.fileWork_.give({ { photos, std::nullopt }, begin, transfer == Transfer::move });
    };
    model.ports_.panels.chooseFolder(request, chosen);
}

void BrowserModel::FileChanges::transfer(
    std::vector<FileUrl> photos, FileUrl const& target, Transfer transfer)
{
    if (photos.empty())
        return;
    auto const total = photos.size();
    if (transfer == Transfer::move)
        model.leaving_ = photos;
    auto const work = [&operations = model.ports_.operations, &files = model.ports_.files,
                          photos = std::move(photos), target, transfer](FileRun& run) {
        return transferFiles(operations, files, transfer, photos, target, run);
    };
    auto const done = [&model = model, target, transfer](TransferResult const& result) {
        model.leaving_.clear();
        if (transfer == Transfer::move)
            model.removeItems(UrlSet(result.done.begin(), result.done.end()));
        model.showStatus(
            messages::transferred(result.done.size(), target.name(), transfer, result.failed));
    };
    model.fileWork_.run(total, work, done);
}

void BrowserModel::stopFileWork(std::function<void()> done)
{
    pageWork_.cancel();
    fileWork_.stopThen([this, done = std::move(done)] { pageWork_.stopThen(done); });
}

void BrowserModel::copyToClipboard()
{
    auto const photos = FileChanges { *this }.photosNow();
    if (photos.empty())
        return;
    ports_.clipboard.setFiles(photos);
    showStatus(messages::copiedToClipboard(photos.size()));
}

void BrowserModel::revealInFinder()
{
    if (auto const photos = FileChanges { *this }.photosNow(); !photos.empty())
        ports_.workspace.reveal(photos);
}

void BrowserModel::openWithDefaultApp()
{
    for (auto const& photo : FileChanges { *this }.photosNow())
        ports_.workspace.open(photo);
}

} // namespace pixelhain
