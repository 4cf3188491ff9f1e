#pragma once
#include "base/Task.h"
#include "model/PhotoList.h"
#include "model/UrlSet.h"
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pixelhain {

class Background;
class MainLoop;
class TextOrder;

/// The photos of the last scan and which of them are visible. A short list is filtered and ordered
/// at once; a long one, for which that takes longer than a frame, in the background, and only what
/// was chosen last is shown. Main thread.
class PhotoFilter {
public:
    /// What a list has to do with the one that is shown: others of the same scan, those of another
    /// scan, or the very same photos in the same order, of which more is known.
    enum class Scan { same, other, completed };

    /// Shows a list and gives back the one before: it may be wanted again, and one that is not may
    /// take long to free.
    using Show = std::function<std::vector<PhotoItem>(std::vector<PhotoItem> visible, Scan scan)>;

    /// Hears that a search takes longer than a moment, and when what was chosen is shown.
    using ShowActivity = std::function<void(bool isSearching)>;
    using Command = std::function<void()>;
    enum class Purpose { marks, slideshow, contactSheet };

    PhotoFilter(Background& background, MainLoop& loop, TextOrder const& order, Show show,
        ShowActivity showActivity);

    /// Holds photos that were forgotten until a moment after the last search has ended.
    std::vector<PhotoItem> const& photos() const { return list_->items(); }

    /// Has shown what `choice` lets through, now or later, as soon as what it orders by is known; a
    /// search that is still under way is dropped. Without a search text what was visible before the
    /// search is there at once.
    void choose(ViewChoice const& choice);

    /// Makes a long list ready to be searched, in the background, and those that come.
    void expectSearch();

    /// Whether what was chosen last is still to be shown.
    bool isUnderWay() const { return static_cast<bool>(task_); }

    /// What the list that is shown was chosen by.
    ViewChoice const& shown() const { return shown_; }

    /// Runs a command for the list that was chosen last as soon as that is shown; at once if it is.
    /// Forgotten when another text is searched for before, or another scan comes: it was not given
    /// for that.
    void whenShown(Purpose purpose, Command command);
    /// Runs a command that marks photos after those that wait; at once if none does.
    void inTurn(Command command);
    /// Forgets the commands that wait for this; whether there were any.
    bool takeBack(Purpose purpose);

    /// Shows nothing: other folders are to be read.
    void clear(ViewChoice const& choice);

    /// Shows the photos of another scan, of which `choice` lets `visible` through. Forgets what
    /// waits.
    void replace(
        std::shared_ptr<PhotoList> list, ViewChoice const& choice, std::vector<PhotoItem> visible);

    /// The photos that are there, by their names alone until now, with all that is known of them,
    /// of which `choice` lets `visible` through. What waits for their dates or sizes is shown.
    void complete(
        std::shared_ptr<PhotoList> list, ViewChoice const& choice, std::vector<PhotoItem> visible);

    /// Forgets photos; the owner takes them out of what is shown. What is under way is begun anew.
    void remove(UrlSet const& urls);

private:
    struct Waiting {
        Purpose purpose;
        Command command;
    };

    void makeReady();
    void deriveLater(ViewChoice const& choice);
    void deliver(ViewChoice const& choice, std::vector<PhotoItem> visible, Scan scan = Scan::same);
    void settle();
    void dropWhole();
    void takeOutGone();

    Background& background_;
    MainLoop& loop_;
    TextOrder const& order_;
    Show show_;
    ShowActivity showActivity_;
    std::shared_ptr<PhotoList> list_ = std::make_shared<PhotoList>();
    UrlSet gone_; ///< photos that are still to be taken out of the list
    Task takeOut_;
    ViewChoice shown_;
    ViewChoice chosen_; ///< what is under way
    std::optional<std::vector<PhotoItem>> whole_; ///< what a search replaced, in the order shown
    Task task_;
    Task activityTask_; ///< while something is under way
    std::vector<Waiting> waiting_; ///< for what is under way
    bool isSearchExpected_ = false;
};

} // namespace pixelhain
