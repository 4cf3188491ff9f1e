#include "contactsheet/ContactSheetExport.h"
#include "base/Text.h"
#include "contactsheet/ContactSheetLayout.h"
#include "contactsheet/ContactSheetMessages.h"
#include "model/BrowserModel.h"
#include "model/SelectionRules.h"
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

// Until a sheet is whole there is nothing in its place that a panel would ask about.
bool ContactSheetExport::isAwaited(FileUrl const& target)
{
    std::erase_if(awaited_, [](auto const& place) { return place.expired(); });
    return std::ranges::any_of(
        awaited_, [&](auto const& place) { return *place.lock() == target; });
}

void ContactSheetExport::render(ContactSheetJob job)
{
    services_.model.showStatus(messages::creatingContactSheet(job.photos.size()));
    auto const place = std::make_shared<std::optional<FileUrl>>(job.target);
    awaited_.push_back(place);
    auto const begin = [this, place, alive = std::weak_ptr(alive_),
                           job = std::make_shared<ContactSheetJob>(std::move(job))](auto const&) {
        if (alive.expired())
            return;
        ContactSheetLayout const layout(job->options, job->photos.size(), job->options.page());
        auto const work = [pictures = services_.pictures, job](
                              FileRun& run) { return renderContactSheet(pictures, *job, run); };
        auto const done
            = [this, place, alive, target = job->target](ContactSheetResult const& result) {
                  place->reset();
                  if (!alive.expired())
                      ended(target, result);
              };
        services_.model.pageWork().run(layout.pages, work, done);
    };
    services_.model.pageWork().give({ {}, begin });
}

void ContactSheetExport::ended(FileUrl const& target, ContactSheetResult const& result)
{
    switch (result.end) {
    case ContactSheetResult::End::done:
        services_.model.showStatus(messages::savedContactSheet(target.name()));
        services_.workspace.open(target);
        break;
    case ContactSheetResult::End::cancelled:
        services_.model.showStatus(std::string(messages::cancelledContactSheet));
        break;
    case ContactSheetResult::End::failed:
        services_.model.showStatus(messages::failedContactSheet(result.problem));
        break;
    }
}

} // namespace pixelhain
