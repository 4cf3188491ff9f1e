#include "qt/app/Milestones.h"
#include "model/BrowserModel.h"
#include "qt/window/MainWindowWidget.h"

namespace pixelhain {

Milestones::Milestones(Trace const& trace, BrowserModel& model, MainWindowWidget& window)
    : trace_(trace)
    , model_(model)
    , window_(window)
    , observation_(model.observe([this] { modelChanged(); }))
{
}

void Milestones::windowShown()
{
    trace_.milestone("window-shown");
    isShown_ = true;
    look();
}

void Milestones::modelChanged()
{
    if (wasLoading_ && !model_.isLoading) {
        trace_.milestone("scan-accepted", model_.allItems().size());
        sawFilled_ = false;
        sawComplete_ = false;
        sawIdle_ = false;
        // Without photos the gallery paints no frame that would tell.
        if (model_.items->empty())
            look();
    }
    wasLoading_ = model_.isLoading;
    // Nor do folders that are no longer there, or none at all.
    if (wasLooking_ && !model_.isLookingForFolders() && model_.items->empty())
        look();
    wasLooking_ = model_.isLookingForFolders();
    if (status_.changed(model_.status) && *model_.status)
        trace_.milestone("status: " + **model_.status);
}

// Pictures may be painted within the window's very first frame, which nobody sees before it is on
// the screen.
void Milestones::look()
{
    auto const& grid = window_.content().grid();
    if (!isShown_)
        return;
    lookAtViewer();
    if (!sawFilled_ && (grid.isFilled() || window_.isComplete())) {
        sawFilled_ = true;
        trace_.milestone("visible-early", grid.view().inView().count());
    }
    if (!sawPicture_ && grid.hasShownPicture()) {
        sawPicture_ = true;
        trace_.milestone("first-thumbnail");
    }
    if (!sawComplete_ && window_.isComplete()) {
        sawComplete_ = true;
        trace_.milestone("visible-complete", grid.view().inView().count());
        auto const read = grid.view().bytesRead();
        trace_.milestone("bytes-read", read.pictures);
        trace_.milestone("bytes-looked", read.looks);
    }
    if (sawComplete_ && !sawIdle_ && isIdle()) {
        sawIdle_ = true;
        trace_.milestone("idle");
    }
}

void Milestones::lookAtViewer()
{
    auto const* const viewer = window_.content().viewer();
    auto const index = model_.viewerIndex.get();
    if (!viewer || !index || *index >= model_.items->size())
        photo_.reset();
    else if (auto const& url = (*model_.items)[*index].url; photo_ != url && viewer->isComplete()) {
        photo_ = url;
        trace_.milestone("photo-shown", *index + 1);
    }
}

bool Milestones::isIdle() const
{
    return window_.isComplete() && (model_.items->empty() || window_.content().grid().isIdle());
}

} // namespace pixelhain
