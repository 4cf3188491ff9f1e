#pragma once
#include "base/Published.h"
#include "model/PhotoTest.h"
#include "sidebar/FolderListing.h"
#include "sidebar/FolderNode.h"
#include "sidebar/FolderRow.h"
#include "sidebar/SidebarPorts.h"
#include "sidebar/UnreportedFolders.h"
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace pixelhain {

class BrowserModel;

/// The left column of the main window: the tree of the root folder, which folders the gallery
/// shows, and what the user does with them. Folders are listed and counted in the background, and
/// only those whose rows are drawn. Main thread only.
class SidebarView {
public:
    static constexpr std::string_view header = "Ordner";
    static constexpr std::string_view refreshSymbol = "arrow.clockwise";
    static constexpr std::string_view refreshTip = "Ordnerliste aktualisieren";
    static constexpr std::string_view goUpSymbol = "arrow.up";
    /// Said by screen readers, which tell the keys by themselves.
    static constexpr std::string_view goUpName = "Übergeordneten Ordner anzeigen";
    static constexpr std::string_view goUpTip = "Übergeordneten Ordner anzeigen (⌘↑)";
    static constexpr std::string_view openSymbol = "folder.badge.plus";
    static constexpr std::string_view openTitle = "Ordner öffnen …";
    static constexpr double openPaddingX = 12;
    static constexpr double openPaddingY = 8;

    SidebarView(BrowserModel& model, SidebarPorts const& ports, SidebarObserver& observer);
    ~SidebarView();

    /// To be called after every change of the model.
    void modelChanged();

    FolderNode* root() { return root_.get(); }

    /// The nodes of the folders that the gallery shows, as far as they are in the tree.
    std::vector<FolderNode*> shownNodes();
    FolderNode* find(FileUrl const& url);

    /// How the row of a node looks now.
    FolderRow row(FolderNode const& node) const;
    bool isCurrent(FolderNode const& node) const { return current_.contains(node.url()); }

    /// Whether the row has a disclosure triangle: for a folder that is still being listed, whether
    /// it had one before the tree was read anew.
    bool isBranch(FolderNode const& node) const;

    /// The children that are open when the row opens for the first time: they lead to a folder that
    /// is shown. The root itself begins open.
    std::vector<FolderNode*> openedWith(FolderNode& node);

    /// Whether a folder is shown that lies below this one.
    bool showsBelow(FolderNode const& node) const;

    /// The rows that are on the screen now: they are listed and counted, others no longer.
    void rowsDrawn(std::vector<FolderNode*> nodes);

    /// Whether all that is drawn is known.
    bool isComplete() const;

    /// The user chose rows; shows them after the current turn of the loop. With `Others::keep`
    /// folders stay that are shown but have no row to choose. No rows: nothing happens.
    enum class Others { drop, keep };
    void choose(std::span<FolderNode* const> nodes, Others others);

    std::vector<FolderCommand> menu(FolderNode const& node) const;
    void perform(FolderCommand command, FileUrl const& url);

    void refresh();
    bool canGoUp() const;
    void goUp();
    void openFolder();

private:
    struct RowState {
        std::optional<std::size_t> count;
        bool wasBranch = false;
        bool wasOpened = false;
        int countsVersion = -1; ///< for which it was or is being counted
        bool isCounting = false;
        Task listing;
        Task counting;
    };
    using Tree = std::shared_ptr<FolderNode>;

    void rebuild();
    void loadRoot();
    void replace(Tree tree);
    void carryOver();
    void lookAt(FolderNode& node);
    void list(FolderNode& node, RowState& state);
    void count(FolderNode& node, RowState& state);
    void useFolders();
    std::vector<UnreportedFolders::Known> knownFolders() const;
    FolderTools tools() const;

    BrowserModel& model_;
    SidebarPorts ports_;
    SidebarObserver& observer_;
    std::shared_ptr<PhotoTest> photoTest_; ///< shared with work that outlives this
    Tree root_;
    std::unordered_set<FileUrl> current_;
    std::unordered_map<FolderNode const*, RowState> rows_;
    std::unordered_map<FileUrl, RowState> carried_; ///< of rows drawn before the tree was replaced
    std::vector<FolderNode*> drawn_;
    LastSeen<std::optional<FileUrl>> seenRoot_;
    LastSeen<int> seenTree_;
    LastSeen<int> seenCounts_;
    LastSeen<std::vector<FileUrl>> seenFolders_;
    Task loading_;
    bool isLoading_ = false;
    bool mustLoadAgain_ = false;
    UnreportedFolders unreported_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pixelhain
