#include "contactsheet/ContactSheetExport.h"
#include "base/Text.h"
#include "contactsheet/ContactSheetLayout.h"
#include "contactsheet/ContactSheetMessages.h"
#include "model/BrowserModel.h"
#include "model/SelectionRules.h"
#include "ports/Background.h"
#include "ports/MainLoop.h"
#include "ports/Panels.h"
#include "ports/Workspace.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

constexpr std::size_t fewestMarked = 2;

bool takesMarkedOnly(BrowserModel const& model)
{
    return model.selection->size() >= fewestMarked;
}

} // namespace

std::vector<PhotoItem> contactSheetPhotos(BrowserModel const& model)
{
    auto const& items = *model.items;
    if (!takesMarkedOnly(model))
        return items;
    auto const isMarked = membership(model.selection, items);
    std::vector<PhotoItem> photos;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (isMarked[i])
            photos.push_back(items[i]);
    return photos;
}

std::size_t contactSheetPhotoCount(BrowserModel const& model)
{
    auto const& items = *model.items;
    if (!takesMarkedOnly(model))
        return items.size();
    auto const isMarked = membership(model.selection, items);
    return static_cast<std::size_t>(std::ranges::count(isMarked, true));
}

ContactSheetOptions usualContactSheetOptions(BrowserModel const& model)
{
    ContactSheetOptions options;
    if (model.folders->size() < 2) {
        options.title = model.windowTitle();
        return options;
    }
    for (auto const& folder : *model.folders)
        options.title += (options.title.empty() ? "" : ", ") + displayText(folder.name());
    return options;
}

void ContactSheetExport::beginLater(ContactSheetOptions options)
{
    services_.loop.post([this, alive = std::weak_ptr(alive_), options = std::move(options)] {
        if (!alive.expired())
            begin(options);
    });
}

void ContactSheetExport::begin(ContactSheetOptions const& options)
{
    auto const& model = services_.model;
    ContactSheetJob job;
    job.photos = contactSheetPhotos(model);
    if (job.photos.empty())
        return;
    job.options = options;
    SavePanelRequest const request { messages::contactSheetFileName(model.windowTitle()), "PDF",
        "pdf", model.folder };
    services_.panels.chooseSaveFile(request,
        [this, alive = std::weak_ptr(alive_), job = std::move(job)](FileUrl const& target) mutable {
            if (alive.expired())
                return;
            if (isAwaited(target))
                return services_.model.showStatus(std::string(messages::awaitedContactSheet));
            job.date = services_.today();
            job.target = target;
            render(std::move(job));
        });
}

// Of sheets that never began nobody else hears.
void ContactSheetExport::countForgotten()
{
    forgotten_ += std::erase_if(awaited_, [](auto const& place) { return place.expired(); });
}

// Until a sheet is whole there is nothing in its place that a panel would ask about.
bool ContactSheetExport::isAwaited(FileUrl const& target)
{
    countForgotten();
    return std::ranges::any_of(
        awaited_, [&](auto const& place) { return *place.lock() == target; });
}

/// A sheet until its turn comes.
struct ContactSheetExport::Queued {
    ContactSheetJob job;
    Task note {};
};

void ContactSheetExport::render(ContactSheetJob job)
{
    services_.model.showStatus(messages::creatingContactSheet(job.photos.size()));
    auto const place = std::make_shared<FileUrl const>(job.target);
    awaited_.push_back(place);
    auto const queued = std::make_shared<Queued>(Queued { std::move(job) });
    if (services_.model.pageWork().isBusy())
        noteReplaced(queued);
    auto const begin = [this, place, queued, alive = std::weak_ptr(alive_)](auto const&) {
        if (alive.expired())
            return;
        auto const begun = std::make_shared<ContactSheetJob const>(std::move(queued->job));
        ContactSheetLayout const layout(
            begun->options, begun->photos.size(), begun->options.page());
        auto const work = [pictures = services_.pictures, begun](
                              FileRun& run) { return renderContactSheet(pictures, *begun, run); };
        auto const done = [this, place, alive](ContactSheetResult const& result) {
            if (!alive.expired())
                ended(place, result);
        };
        services_.model.pageWork().run(layout.pages, work, done);
    };
    services_.model.pageWork().give({ {}, begin });
}

// A file that comes to its place while a sheet waits is none that anybody agreed to lose.
void ContactSheetExport::noteReplaced(std::shared_ptr<Queued> const& queued)
{
    queued->note = runThen(
        services_.background, services_.loop, Priority::userInitiated,
        [&files = services_.files, target = queued->job.target] { return files.look(target); },
        [kept = std::weak_ptr(queued)](ReplacedFile const& there) {
            if (auto const sheet = kept.lock())
                sheet->job.agreed = there;
        });
}

void ContactSheetExport::ended(Place const& place, ContactSheetResult const& result)
{
    std::erase_if(awaited_, [&](auto const& one) { return one.lock() == place; });
    countForgotten();
    auto const forgotten = std::exchange(forgotten_, 0);
    auto const tell = [&](std::string message) {
        services_.model.showStatus(message + messages::alsoCancelledContactSheets(forgotten));
    };
    switch (result.end) {
    case ContactSheetResult::End::done:
        tell(messages::savedContactSheet(place->name()));
        services_.workspace.open(*place);
        break;
    case ContactSheetResult::End::cancelled:
        services_.model.showStatus(messages::cancelledContactSheets(forgotten + 1));
        break;
    case ContactSheetResult::End::failed:
        tell(messages::failedContactSheet(result.problem));
        break;
    }
}

} // namespace pixelhain
