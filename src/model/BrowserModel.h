#pragma once
#include "model/BrowserFields.h"
#include "model/BrowserOptions.h"
#include "model/FileWork.h"
#include "model/PhotoFilter.h"
#include "model/PhotoTest.h"
#include "model/Slideshow.h"
#include "model/TrashedPhoto.h"
#include "ports/Ports.h"
#include "sidebar/FolderWatcher.h"
#include <memory>

namespace pixelhain {

struct ClickModifiers;
struct KeyEvent;

/// The one observable object behind the main window: which folders are open, the scan result, the
/// visible list, the selection and the settings. Views read its fields and call its operations.
/// Main thread only; scans and changes of files run in the background and come back.
class BrowserModel final : public BrowserFields {
public:
    /// Reads the settings. Starts no scan.
    explicit BrowserModel(Ports const& ports);
    ~BrowserModel();

    /// The last scan, unfiltered and unsorted.
    std::vector<PhotoItem> const& allItems() const { return photos_.photos(); }
    std::string windowTitle() const;

    // Folders. What has to look at a disk first answers later; the newest request wins.
    void restoreLastFolders(); ///< of the last run, unless a folder is open by then
    /// Whether a place is being looked at that may be shown then; observers hear of the end.
    bool isLookingForFolders() const { return openTask_ || restoreTask_; }
    void chooseFolder();
    /// Opens a folder, or an image file in its folder; a path that does not exist is ignored.
    void open(FileUrl const& url);
    void openRecent(FileUrl const& url); ///< one of `recentFolders`; says so if it is not there
    void clearRecentFolders();
    void setRoot(FileUrl const& url, AlsoSelect alsoSelect);
    void selectFolders(std::vector<FileUrl> urls, FocusGallery focusGallery);
    void startScan();
    void reload();
    void refreshTree(); ///< the sidebar's folders and counts; the gallery stays as it is
    bool canGoUp() const;
    void showParentFolder(); ///< as the root; the shown folders stay
    /// Where in `items` a photo stands; quick if what orders them was known when it was taken.
    std::optional<std::size_t> placeOf(PhotoItem const& photo) const;
    ViewChoice const& shownChoice() const { return photos_.shown(); } ///< made `items` what it is
    void applyFilter(); ///< derives `items` anew; those of a very long list come later

    void showStatus(std::string text); ///< in the status bar, for five seconds
    void setShowContactSheetDialog(bool shows); ///< only while there are photos

    // Settings: each is stored under its key at once, numbers brought into their range.
    void expectSearch() { photos_.expectSearch(); } ///< the first key is then no slower
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
    void click(std::size_t index, ClickModifiers modifiers);
    void toggle(std::size_t index);
    void selectAll();
    void selectNone();
    void invertSelection();
    /// -1 and +1 for a photo, the number of columns for a row.
    void moveCursor(std::ptrdiff_t delta, Extend extend);
    void placeCursor(); ///< on the first photo if it is on none, once a search is through
    void openViewer(std::size_t index);
    void closeViewer();
    void stepViewer(std::ptrdiff_t delta);
    void markInViewer();
    /// Shows the marked photos if there are two, else all. Takes a start back that waits.
    void startSlideshow();
    void toggleInfo() { showInfo = !showInfo; }
    void stopSlideshow();
    void toggleSlideshowPause();
    /// The photo in the viewer; unless a search is under way, else visible marks, or the cursor's.
    std::vector<FileUrl> actionTargets() const;

    /// Whether the key was ours. Every key that goes down in the program is to pass here first.
    bool handleKey(KeyEvent const& event);

    // Files. Changes happen one after the other in the background; one that is given while another
    // is under way waits, and is meant for what will then be where the user saw it.
    void trashTargets();
    void trash(std::vector<FileUrl> urls);
    void undoTrash();
    void moveOrCopyTargets(Transfer transfer);
    void copyToClipboard();
    void revealInFinder();
    void openWithDefaultApp();
    /// Drops photos that have left their folder.
    void removeItems(UrlSet const& urls);
    std::vector<TrashedPhoto> const& lastTrashed() const { return lastTrashed_; }
    bool isBusyWithFiles() const { return fileWork_.isBusy() || pageWork_.isBusy(); }
    /// Stops after the file that is under way, and forgets what waits.
    void cancelFileWork() { fileWork_.cancel(); }
    /// Cancels, documents too, and calls `done` once no file is under way; at once if none is.
    void stopFileWork(std::function<void()> done);
    FileWork& pageWork() { return pageWork_; } ///< writes documents, beside changes of files

private:
    struct ScanSteps;
    struct Restorable;
    struct KeyActions;
    struct FileChanges;
    struct SlideshowSteps;
    enum class Place : std::uint8_t { nothing, file, folder };

    void look(FileUrl const& url, std::function<bool(Place)> opens);
    void openPlace(FileUrl const& folder, std::optional<FileUrl> const& file);
    void restore(Restorable const& found);
    void setRecentFolders(std::vector<FileUrl> places);
    std::vector<PhotoItem> showItems(std::vector<PhotoItem> visible, PhotoFilter::Scan scan);
    std::optional<std::size_t> indexOf(std::optional<FileUrl> const& url) const;
    std::optional<FileUrl> urlAt(std::optional<std::size_t> index) const;
    void mark(std::size_t from, std::size_t to);
    void stepSlideshow(std::ptrdiff_t delta);
    void showInViewer(std::optional<std::size_t> index, ViewerTransition transition);
    void prefetch(std::vector<std::size_t> const& next);

    Ports ports_;
    std::shared_ptr<PhotoTest> photoTest_; ///< shared with scans that outlive the model
    FolderWatcher folderWatcher_;
    PhotoFilter photos_;
    Slideshow slideshow_;
    std::vector<TrashedPhoto> lastTrashed_; ///< what `canUndoTrash` can bring back
    std::shared_ptr<Restorable> heldRestore_; ///< found while an open request still looked
    Task openTask_; ///< while a place is looked at that is to be opened
    Task restoreTask_; ///< while those of the last run are
    Task statusTask_;
    Task scanTask_;
    std::vector<FileUrl> leaving_; ///< what a change of files that is under way takes away
    bool isScanUnderWay_ = false;
    bool areNamesShown_ = false; ///< of a scan that may still look at the photos
    UrlSet removedWhileScanning_; ///< by us; the scan under way may have seen them before
    FileWork fileWork_;
    FileWork pageWork_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pixelhain
