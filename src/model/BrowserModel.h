#pragma once
#include "base/FileUrl.h"
#include "base/Published.h"
#include "model/PhotoIndex.h"
#include "model/PhotoItem.h"
#include "model/PhotoTest.h"
#include "model/Slideshow.h"
#include "model/SortKey.h"
#include "model/TrashedPhoto.h"
#include "ports/Ports.h"
#include "sidebar/FolderWatcher.h"
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pixelhain {

class MainWindow;

/// Whether showing other folders also moves the keyboard focus to the gallery.
enum class FocusGallery { no, yes };

/// Whether a new root of the folder tree is also the folder that is shown.
enum class AlsoSelect { no, yes };

/// The one observable object behind the main window: which folders are open, the scan result, the
/// visible list, the selection and the settings. Views read its fields and call its operations.
/// Main thread only; scans run in the background and come back.
class BrowserModel final : public Observable {
    template <typename T> using Field = Published<T, BrowserModel>;

public:
    /// Reads the settings. Starts no scan.
    explicit BrowserModel(Ports const& ports);
    ~BrowserModel();

    Field<std::optional<FileUrl>> folder { *this }; ///< the first of `folders`
    Field<std::vector<FileUrl>> folders { *this }; ///< whose photos are shown
    Field<std::optional<FileUrl>> rootFolder { *this }; ///< the top of the folder tree
    Field<int> treeVersion { *this, 0 }; ///< bumped to make the sidebar rebuild its tree
    Field<int> countsVersion { *this, 0 }; ///< bumped to make the sidebar recount
    Field<std::vector<PhotoItem>> items { *this }; ///< `allItems` filtered and sorted
    Field<std::set<FileUrl>> selection { *this }; ///< the marked photos
    Field<std::optional<std::size_t>> cursor { *this }; ///< index into `items`
    Field<std::optional<std::size_t>> viewerIndex { *this }; ///< none while the gallery shows
    Field<bool> isSlideshow { *this, false };
    Field<bool> isSlideshowPaused { *this, false };
    Field<bool> isLoading { *this, false }; ///< a scan is under way
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

    /// The last accepted scan, unfiltered and unsorted.
    std::vector<PhotoItem> const& allItems() const { return allItems_; }
    int columns() const { return columns_; }
    std::optional<std::size_t> anchor() const { return anchor_; }
    int scanGeneration() const { return scanGeneration_; }
    std::optional<FileUrl> const& pendingFileToShow() const { return pendingFileToShow_; }
    std::string windowTitle() const;

    // Folders. What has to look at a disk first answers later; the newest request wins.
    /// Shows the folders of the last run again, unless a folder is open by then.
    void restoreLastFolders();
    /// Whether a place is still being looked at, which may be shown then.
    bool isLookingForFolders() const { return isOpening_ || isRestoring_; }
    void chooseFolder();
    /// Opens a folder, or an image file in its folder; a path that does not exist is ignored.
    void open(FileUrl const& url);
    void setRoot(FileUrl const& url, AlsoSelect alsoSelect);
    void selectFolders(std::vector<FileUrl> urls, FocusGallery focusGallery);
    void startScan();
    void reload();
    /// Makes the sidebar list and count its folders again; the gallery stays as it is.
    void refreshTree();
    void applyFilter();

    /// Shows a message in the status bar for five seconds.
    void showStatus(std::string text);

    // Settings: each is stored under its key at once, numbers brought into their range.
    void setSearchText(std::string text);
    void setSortKey(SortKey key);
    void setAscending(bool value);
    void setIncludeSubfolders(bool value);
    void setThumbSize(double points);
    void setShowFilenames(bool value);
    void setShowResolution(bool value);
    void setSlideshowInterval(double seconds);
    void setSlideshowShuffle(bool value);

    // Selection and viewer. An index outside `items` does nothing.
    void toggle(std::size_t index);
    void selectNone();
    void openViewer(std::size_t index);
    void closeViewer();
    void stopSlideshow();

    /// The columns of the gallery as last laid out; at least 1.
    void setColumns(int count) { columns_ = count < 1 ? 1 : count; }

    MainWindow* window() const { return window_; }
    /// The window withdraws itself with null before it goes.
    void setWindow(MainWindow* window) { window_ = window; }

private:
    struct ScanAnswer;
    struct Restorable;

    void openPlace(FileUrl const& folder, std::optional<FileUrl> const& file);
    void restore(Restorable const& found);
    void accept(ScanAnswer answer);
    void showItems(std::vector<PhotoItem> visible);
    void discard(std::vector<PhotoItem> photos);
    std::optional<std::size_t> indexOf(std::optional<FileUrl> const& url) const;

    Ports ports_;
    std::shared_ptr<PhotoTest> photoTest_; ///< shared with scans that outlive the model
    FolderWatcher folderWatcher_;
    std::vector<PhotoItem> allItems_;
    PhotoIndex index_;
    MainWindow* window_ = nullptr;
    int columns_ = 1;
    std::optional<std::size_t> anchor_;
    int scanGeneration_ = 0;
    std::optional<FileUrl> pendingFileToShow_;
    Slideshow slideshow_;
    std::vector<TrashedPhoto> lastTrashed_; ///< what `canUndoTrash` can bring back
    std::shared_ptr<Restorable> heldRestore_; ///< found while an open request still looked
    bool isOpening_ = false;
    bool isRestoring_ = false;
    Task openTask_;
    Task restoreTask_;
    Task statusTask_;
    Task scanTask_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pixelhain
