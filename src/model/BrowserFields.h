#pragma once
#include "base/FileUrl.h"
#include "base/Published.h"
#include "base/Task.h"
#include "model/FileProgress.h"
#include "model/PhotoItem.h"
#include "model/SortKey.h"
#include "model/UrlSet.h"
#include "model/ViewChoice.h"
#include "model/ViewerTransition.h"
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

class BrowserModel;
class MainWindow;

/// What the browser model publishes. Everyone may read these fields, only the model writes them.
class BrowserFields : public Observable {
    template <typename T> using Field = Published<T, BrowserModel>;

public:
    Field<std::optional<FileUrl>> folder { *this }; ///< the first of `folders`
    Field<std::vector<FileUrl>> folders { *this }; ///< whose photos are shown
    Field<std::optional<FileUrl>> rootFolder { *this }; ///< the top of the folder tree
    Field<std::vector<FileUrl>> recentFolders { *this }; ///< opened last, newest first
    Field<int> treeVersion { *this, 0 }; ///< bumped to make the sidebar rebuild its tree
    Field<int> countsVersion { *this, 0 }; ///< bumped to make the sidebar recount
    Field<std::vector<PhotoItem>> items { *this }; ///< `allItems` filtered and sorted
    Field<UrlSet> selection { *this }; ///< the marked photos
    Field<std::optional<std::size_t>> cursor { *this }; ///< index into `items`
    Field<int> cursorVersion { *this, 0 }; ///< bumped to make the gallery show the cursor's photo
    Field<std::optional<std::size_t>> viewerIndex { *this }; ///< none while the gallery shows
    /// How the viewer came to `viewerIndex`; written whenever that is.
    Field<ViewerTransition> viewerTransition { *this, ViewerTransition::none };
    Field<bool> isSlideshow { *this, false };
    Field<bool> isSlideshowPaused { *this, false };
    Field<bool> isLoading { *this, false }; ///< a scan has nothing to show yet
    /// A long list is being searched or ordered, for longer than a moment.
    Field<bool> isSearching { *this, false };
    Field<bool> canUndoTrash { *this, false };
    Field<std::optional<std::string>> status { *this }; ///< the status bar's message
    Field<bool> showInfo { *this, false };
    Field<bool> showContactSheetDialog { *this, false };
    Field<std::string> searchText { *this };
    Field<SortKey> sortKey { *this, SortKey::name };
    Field<bool> ascending { *this, true };
    Field<bool> includeSubfolders { *this, false };
    Field<double> thumbSize { *this, 170 }; ///< edge of a gallery cell in points
    Field<bool> showFilenames { *this, true };
    Field<bool> showResolution { *this, true };
    Field<double> slideshowInterval { *this, 4 }; ///< seconds per slide
    Field<bool> slideshowShuffle { *this, false };
    /// How far a change of many files has come; none while none runs, or none that takes long.
    Field<std::optional<FileProgress>> fileProgress { *this };
    /// The same for the pages of a document that is being written.
    Field<std::optional<FileProgress>> pageProgress { *this };

    /// What decides about `items`.
    ViewChoice viewChoice() const { return { searchText, sortKey, ascending }; }

    // What nobody has to be told about.
    int columns() const { return columns_; }
    /// The columns of the gallery as last laid out; at least 1.
    void setColumns(int count) { columns_ = count < 1 ? 1 : count; }
    std::optional<std::size_t> anchor() const { return anchor_; }
    int scanGeneration() const { return scanGeneration_; }
    std::optional<FileUrl> const& pendingFileToShow() const { return pendingFileToShow_; }
    MainWindow* window() const { return window_; }
    /// The window withdraws itself with null before it goes.
    void setWindow(MainWindow* window) { window_ = window; }
    /// Keeps what passes the keys on; there is one at most, a second one is dropped.
    void setKeyMonitor(Task monitor);
    bool hasKeyMonitor() const { return static_cast<bool>(keyMonitor_); }

protected:
    using Observable::Observable;
    ~BrowserFields() = default;

    int columns_ = 1;
    std::optional<std::size_t> anchor_; ///< where a range that Shift marks begins
    int scanGeneration_ = 0; ///< number of the newest scan
    std::optional<FileUrl> pendingFileToShow_; ///< opens in the viewer once its scan is there
    MainWindow* window_ = nullptr;
    Task keyMonitor_;
};

} // namespace pixelhain
