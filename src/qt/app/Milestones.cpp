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

void Milestones::modelChanged()
{
    if (wasLoading_ && !model_.isLoading) {
        trace_.milestone("scan-accepted", model_.allItems().size());
        sawComplete_ = false;
        sawIdle_ = false;
    }
    wasLoading_ = model_.isLoading;
}

void Milestones::painted()
{
    auto const& grid = window_.content().grid();
    if (!sawPicture_ && grid.hasShownPicture()) {
        sawPicture_ = true;
        trace_.milestone("first-thumbnail");
    }
    if (!sawComplete_ && window_.isComplete()) {
        sawComplete_ = true;
        trace_.milestone("visible-complete", grid.view().inView().count());
    }
    if (sawComplete_ && !sawIdle_ && window_.isComplete() && grid.isIdle()) {
        sawIdle_ = true;
        trace_.milestone("idle");
    }
}

} // namespace pixelhain
