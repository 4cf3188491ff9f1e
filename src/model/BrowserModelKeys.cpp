#include "model/BrowserModel.h"
#include "model/KeyEvent.h"
#include "model/KeyTable.h"
#include "ports/MainWindow.h"

namespace pixelhain {

namespace {

constexpr double thumbSizeStep = 30; // points

} // namespace

// What the actions do; each says whether there was anything to do with the key.
struct BrowserModel::KeyActions {
    BrowserModel& model;

    bool takeBackStart();
    bool cancelShownWork();
    bool performAnywhere(KeyAction action);
    bool performInGallery(KeyAction action, Extend extend);
    bool performMovement(KeyAction action, Extend extend);
    bool performInViewer(KeyAction action);
    bool performPaging(KeyAction action);
};

void BrowserFields::setKeyMonitor(Task monitor)
{
    if (!keyMonitor_)
        keyMonitor_ = std::move(monitor);
}

bool BrowserModel::handleKey(KeyEvent const& event)
{
    if (!window_ || event.window != window_ || event.windowIsSheet || event.windowHasSheet)
        return false;
    KeyActions keys { *this };
    if (event.focus == KeyFocus::textView)
        return false;
    if (isEscape(event) && (keys.takeBackStart() || keys.cancelShownWork()))
        return true;
    if (event.focus == KeyFocus::tableView && isArrowKey(event))
        return false;
    if (*viewerIndex)
        return keys.performInViewer(viewerAction(event));
    return keys.performInGallery(galleryAction(event), event.shift ? Extend::yes : Extend::no);
}

// What waits for a search. Whoever looks at a photo wants to leave that as well.
bool BrowserModel::KeyActions::takeBackStart()
{
    auto const slideshow = model.photos_.takeBack(PhotoFilter::Purpose::slideshow);
    auto const contactSheet = model.photos_.takeBack(PhotoFilter::Purpose::contactSheet);
    return (slideshow || contactSheet) && !*model.viewerIndex;
}

// Only where the bar can be seen that says so: whoever types wants to be rid of what was typed, and
// whoever looks at a photo meanwhile wants to leave that.
bool BrowserModel::KeyActions::cancelShownWork()
{
    bool const cancelsFiles = model.fileProgress->has_value();
    if (*model.viewerIndex || (!cancelsFiles && !*model.pageProgress))
        return false;
    (cancelsFiles ? model.fileWork_ : model.pageWork_).cancel();
    return true;
}

// The keys with ⌘ work in an empty gallery too.
bool BrowserModel::KeyActions::performAnywhere(KeyAction action)
{
    switch (action) {
    case KeyAction::selectAll:
        model.selectAll();
        return true;
    case KeyAction::selectNone:
        model.selectNone();
        return true;
    default:
        return false;
    }
}

bool BrowserModel::KeyActions::performInGallery(KeyAction action, Extend extend)
{
    if (performAnywhere(action))
        return true;
    if (model.items->empty())
        return false;
    switch (action) {
    case KeyAction::openViewer:
        model.openViewer(model.cursor->value_or(0));
        return true;
    case KeyAction::unmarkAll: {
        auto const anyMarked = !model.selection->empty();
        model.selectNone();
        return anyMarked;
    }
    case KeyAction::toggleMark:
        if (*model.cursor)
            model.toggle(**model.cursor);
        return true;
    case KeyAction::slideshow:
        model.startSlideshow();
        return true;
    case KeyAction::larger:
        model.setThumbSize(model.thumbSize + thumbSizeStep);
        return true;
    case KeyAction::smaller:
        model.setThumbSize(model.thumbSize - thumbSizeStep);
        return true;
    default:
        return performMovement(action, extend);
    }
}

bool BrowserModel::KeyActions::performMovement(KeyAction action, Extend extend)
{
    switch (action) {
    // Who has scrolled away means to come back, also to a cursor that is there already.
    case KeyAction::firstPhoto:
        model.cursor = 0;
        model.cursorVersion = model.cursorVersion + 1;
        return true;
    case KeyAction::lastPhoto:
        model.cursor = model.items->size() - 1;
        model.cursorVersion = model.cursorVersion + 1;
        return true;
    case KeyAction::left:
        model.moveCursor(-1, extend);
        return true;
    case KeyAction::right:
        model.moveCursor(+1, extend);
        return true;
    case KeyAction::up:
        model.moveCursor(-model.columns_, extend);
        return true;
    case KeyAction::down:
        model.moveCursor(+model.columns_, extend);
        return true;
    default:
        return false;
    }
}

bool BrowserModel::KeyActions::performInViewer(KeyAction action)
{
    switch (action) {
    case KeyAction::closeViewer:
        model.closeViewer();
        return true;
    case KeyAction::pauseOrClose:
        if (*model.isSlideshow)
            model.toggleSlideshowPause();
        else
            model.closeViewer();
        return true;
    case KeyAction::slideshow:
        if (*model.isSlideshow)
            model.stopSlideshow();
        else
            model.startSlideshow();
        return true;
    case KeyAction::markAndMoveOn:
        model.markInViewer();
        return true;
    case KeyAction::toggleInfo:
        model.toggleInfo();
        return true;
    case KeyAction::toggleFullScreen:
        model.window_->toggleFullScreen();
        return true;
    default:
        return performAnywhere(action) || performPaging(action);
    }
}

// A slideshow has no first and last photo to go to.
bool BrowserModel::KeyActions::performPaging(KeyAction action)
{
    switch (action) {
    case KeyAction::showFirst:
        if (!*model.isSlideshow)
            model.openViewer(0);
        return true;
    case KeyAction::showLast:
        if (!*model.isSlideshow)
            model.openViewer(model.items->size() - 1);
        return true;
    case KeyAction::previous:
        model.stepViewer(-1);
        return true;
    case KeyAction::next:
        model.stepViewer(+1);
        return true;
    default:
        return false;
    }
}

} // namespace pixelhain
