#include "model/BrowserModel.h"
#include "model/DiscardedPhotos.h"
#include "model/Scanning.h"
#include "model/SelectionRules.h"
#include "ports/Background.h"
#include "ports/TextOrder.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// What a scan saw of the model when it started, so that it can also do the model's part of the
// work; each part is used only if the model has not changed since.
struct ScanAnswer {
    int generation = 0;
    ViewChoice choice; ///< what `visible` was derived for
    UrlSet selected;
    std::shared_ptr<PhotoList> found;
    std::vector<PhotoItem> visible;
    UrlSet stillSelected;
    std::vector<FileUrl> gone; ///< since their names were told

    void take(ScanResult result, PhotoList::Known known, TextOrder const& order)
    {
        found
            = std::make_shared<PhotoList>(std::move(result.items), std::move(result.index), known);
        visible = found->visible(choice, order);
        stillSelected = stillPresent(selected, found->items());
        gone = std::move(result.gone);
    }

    void takeOut(UrlSet const& removed)
    {
        if (removed.empty())
            return;
        found->remove(membership(removed, found->items()));
        removePhotos(visible, membership(removed, visible));
        std::erase_if(stillSelected, [&](FileUrl const& url) { return removed.contains(url); });
    }
};

} // namespace

// What happens when a scan answers.
struct BrowserModel::ScanSteps {
    BrowserModel& model;

    void acceptNames(ScanAnswer answer) const;
    void accept(ScanAnswer answer) const;
    void deriveAgain(ScanAnswer answer) const;
    void show(ScanAnswer answer) const;
};

// A scan does in the background whatever costs time for many photos: it also orders them, derives
// the visible list and looks for marked photos that have gone. In the order of names a gallery that
// is empty shows the photos before the disk has told of each of them: on a slow one that takes
// longer than everything else.
void BrowserModel::startScan()
{
    if (folders->empty())
        return;
    ++scanGeneration_;
    removedWhileScanning_.clear();
    isScanUnderWay_ = true;
    areNamesShown_ = false;
    isLoading = true;
    ScanAnswer seen { scanGeneration_, viewChoice(), selection.get(), {}, {}, {}, {} };
    bool const wantsNames = seen.choice.sortKey == SortKey::name && allItems().empty();
    auto const tell = [this, alive = std::weak_ptr(alive_), &loop = ports_.loop](
                          std::shared_ptr<ScanAnswer> names) {
        loop.post([this, alive, names = std::move(names)] {
            if (!alive.expired())
                ScanSteps { *this }.acceptNames(std::move(*names));
        });
    };
    auto scan
        = [seen = std::move(seen), tell, wantsNames, photoTest = photoTest_, &files = ports_.files,
              &order = ports_.textOrder, patience = ports_.scanPatience, places = folders.get(),
              recursive = includeSubfolders.get()] {
              TellNames const tellNames = [&](ScanResult found) {
                  auto names = std::make_shared<ScanAnswer>(seen);
                  names->take(std::move(found), PhotoList::Known::names, order);
                  tell(std::move(names));
              };
              auto answer = seen;
              answer.take(scanFolders({ files, *photoTest, order, patience }, places, recursive,
                              wantsNames ? tellNames : nullptr),
                  PhotoList::Known::details, order);
              return answer;
          };
    scanTask_ = runThen(ports_.background, ports_.loop, Priority::userInitiated, std::move(scan),
        [this](ScanAnswer answer) { ScanSteps { *this }.accept(std::move(answer)); });
}

// Another text or order was chosen during the scan of a long list.
void BrowserModel::ScanSteps::deriveAgain(ScanAnswer answer) const
{
    discardPhotos(model.ports_.background, std::exchange(answer.visible, {}));
    auto derive = [answer = std::move(answer), choice = model.viewChoice(),
                      &order = model.ports_.textOrder]() mutable {
        answer.choice = choice;
        answer.visible = answer.found->visible(choice, order);
        return std::move(answer);
    };
    model.scanTask_ = runThen(model.ports_.background, model.ports_.loop, Priority::userInitiated,
        std::move(derive),
        [&model = model](ScanAnswer again) { ScanSteps { model }.accept(std::move(again)); });
}

// If another choice was made meanwhile, all that is known of the photos comes soon enough.
void BrowserModel::ScanSteps::acceptNames(ScanAnswer answer) const
{
    if (answer.generation != model.scanGeneration_ || answer.choice != model.viewChoice()) {
        discardPhotos(model.ports_.background, std::move(answer.visible));
        discardPhotos(model.ports_.background, std::move(answer.found));
        return;
    }
    model.areNamesShown_ = true;
    answer.takeOut(model.removedWhileScanning_); // which the rest of the scan may have seen as well
    show(std::move(answer));
}

void BrowserModel::ScanSteps::accept(ScanAnswer answer) const
{
    if (answer.generation != model.scanGeneration_)
        return;
    if (auto const choice = model.viewChoice(); answer.choice != choice) {
        if (!answer.found->isQuick())
            return deriveAgain(std::move(answer));
        answer.choice = choice;
        answer.visible = answer.found->visible(choice, model.ports_.textOrder);
    }
    // The scan may have seen photos that have been taken away since.
    auto const removed = std::exchange(model.removedWhileScanning_, {});
    answer.takeOut(removed);
    model.isScanUnderWay_ = false;
    // What others took away is no choice of the user's: nothing moves on to its neighbours.
    bool const isWhole = std::ranges::all_of(
        answer.gone, [&](FileUrl const& url) { return removed.contains(url); });
    if (model.areNamesShown_ && isWhole)
        model.photos_.complete(std::move(answer.found), answer.choice, std::move(answer.visible));
    else
        show(std::move(answer));
}

void BrowserModel::ScanSteps::show(ScanAnswer answer) const
{
    model.isLoading = false;
    // What left its folder for good before the scan came by is followed as if it were done.
    if (!model.leaving_.empty())
        model.removeItems(vanishedPhotos(model.leaving_, *model.items, answer.found->items()));
    model.selection = *model.selection == answer.selected
        ? std::move(answer.stillSelected)
        : stillPresent(model.selection, answer.found->items());
    model.photos_.replace(std::move(answer.found), answer.choice, std::move(answer.visible));
    if (auto const file = std::exchange(model.pendingFileToShow_, std::nullopt))
        if (auto const index = model.indexOf(file))
            model.openViewer(*index);
}

} // namespace pixelhain
