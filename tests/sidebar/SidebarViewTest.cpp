#include "sidebar/SidebarView.h"
#include "support/Desk.h"
#include <doctest/doctest.h>
#include <set>

using namespace pixelhain;

namespace {

// A sidebar without pixels: all rows that are open count as drawn.
struct Sidebar : SidebarObserver {
    Desk desk;
    std::set<FileUrl> open; ///< folders whose rows are open
    std::vector<std::string> events;
    std::optional<SidebarView> view;
    Observation observation;

    explicit Sidebar(std::initializer_list<char const*> folders = {})
    {
        for (auto const* path : folders)
            desk.files.addFolder(path);
        view.emplace(desk.model(), desk.sidebarPorts(), *this);
        observation = desk.model().observe([this] { view->modelChanged(); });
    }

    // Opens the folder as the root and draws until nothing changes any more.
    void openRoot(char const* path)
    {
        desk.model().open(FileUrl(path));
        draw();
    }

    void draw()
    {
        do {
            desk.settle();
            view->rowsDrawn(rows());
        } while (desk.background.pending() > 0);
    }

    std::vector<FolderNode*> rows()
    {
        std::vector<FolderNode*> nodes;
        if (view->root())
            addRows(*view->root(), nodes);
        return nodes;
    }

    void addRows(FolderNode& node, std::vector<FolderNode*>& nodes)
    {
        nodes.push_back(&node);
        if (open.contains(node.url()))
            for (auto& child : node.children())
                addRows(child, nodes);
    }

    void expand(FolderNode& node)
    {
        open.insert(node.url());
        for (auto* const child : view->openedWith(node))
            expand(*child);
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> shown;
        for (auto const* node : rows())
            shown.push_back(node->name());
        return shown;
    }

    FolderNode& node(char const* path)
    {
        auto* const found = view->find(FileUrl(path));
        REQUIRE(found);
        return *found;
    }

    FolderRow row(char const* path) { return view->row(node(path)); }

    void treeWillChange() override { }
    void treeDidChange() override
    {
        events.emplace_back("tree");
        open.clear();
        if (view && view->root())
            expand(*view->root());
    }
    void childrenWillAppear(FolderNode&, std::size_t) override { }
    void childrenDidAppear(FolderNode& node) override
    {
        events.push_back("children of " + node.name());
        if (open.contains(node.url()))
            expand(node);
    }
    void rowDidChange(FolderNode& node) override { events.push_back("row " + node.name()); }
    void shownFoldersDidChange() override { events.emplace_back("shown"); }
};

} // namespace

TEST_CASE("without a folder there is no tree, and nowhere to go up to")
{
    Sidebar sidebar;
    CHECK(sidebar.view->root() == nullptr);
    CHECK_FALSE(sidebar.view->canGoUp());
    CHECK(sidebar.view->isComplete());
    CHECK(SidebarView::header == "Ordner");
    CHECK(SidebarView::openTitle == "Ordner öffnen …");
    CHECK(SidebarView::refreshTip == "Ordnerliste aktualisieren");
    CHECK(SidebarView::goUpTip == "Übergeordneten Ordner anzeigen (⌘↑)");
}

TEST_CASE("the root is open and shows its subfolders, which are closed")
{
    Sidebar sidebar { "/r/b/innen", "/r/a" };
    sidebar.openRoot("/r");
    CHECK(sidebar.names() == Names { "r", "a", "b" });
    CHECK(sidebar.row("/r").isRoot);
    CHECK(sidebar.row("/r").isCurrent);
    CHECK_FALSE(sidebar.row("/r/a").isRoot);
    CHECK_FALSE(sidebar.row("/r/a").isCurrent);
}

TEST_CASE("a closed branch is listed to know its triangle, but not what lies in it")
{
    Sidebar sidebar { "/r/b/innen/tief", "/r/a" };
    sidebar.openRoot("/r");
    CHECK(sidebar.view->isBranch(sidebar.node("/r/b")));
    CHECK_FALSE(sidebar.view->isBranch(sidebar.node("/r/a")));
    CHECK(sidebar.node("/r/a").loaded());
    CHECK_FALSE(sidebar.node("/r/b/innen").loaded());
}

TEST_CASE("the tree opens along the way to every folder that is shown")
{
    Sidebar sidebar { "/r/a/b/c", "/r/x/y", "/r/ab" };
    sidebar.openRoot("/r");
    sidebar.desk.model().selectFolders({ FileUrl("/r/a/b/c"), FileUrl("/r/x") }, FocusGallery::no);
    sidebar.desk.model().refreshTree();
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a", "b", "c", "ab", "x" });
}

TEST_CASE("a branch opens along the way to a shown folder when its row first appears")
{
    Sidebar sidebar { "/r/a/b/c" };
    sidebar.openRoot("/r");
    sidebar.desk.model().selectFolders({ FileUrl("/r/a/b/c") }, FocusGallery::no);
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a" });
    sidebar.expand(sidebar.node("/r/a"));
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a", "b", "c" });
}

TEST_CASE("a rebuilt tree forgets which branches the user had opened")
{
    Sidebar sidebar { "/r/a/b" };
    sidebar.openRoot("/r");
    sidebar.expand(sidebar.node("/r/a"));
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a", "b" });
    sidebar.desk.model().refreshTree();
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a" });
}

TEST_CASE("another root is there at once, its subfolders when they are read")
{
    Sidebar sidebar { "/r/a", "/q/b" };
    sidebar.openRoot("/r");
    sidebar.desk.model().setRoot(FileUrl("/q"), AlsoSelect::no);
    sidebar.desk.loop.settle();
    CHECK(sidebar.names() == Names { "q" });
    sidebar.draw();
    CHECK(sidebar.names() == Names { "q", "b" });
}

TEST_CASE("while the tree is read anew the old one stays, and takes its place as a whole")
{
    Sidebar sidebar { "/r/a/b" };
    sidebar.desk.files.addFile(FileUrl("/r/a/1.jpg"));
    sidebar.openRoot("/r");
    sidebar.desk.files.addFolder("/r/neu");
    sidebar.events.clear();
    sidebar.desk.model().refreshTree();
    sidebar.desk.loop.settle();
    CHECK(sidebar.names() == Names { "r", "a" });
    CHECK(sidebar.events.empty());
    REQUIRE(sidebar.desk.background.pending() == 1);
    sidebar.desk.finish(0);
    CHECK(sidebar.names() == Names { "r", "a", "neu" });
    // Until they are known anew, count and triangle are those that were last seen.
    sidebar.view->rowsDrawn(sidebar.rows());
    CHECK(sidebar.row("/r/a").count == 1);
    CHECK(sidebar.view->isBranch(sidebar.node("/r/a")));
    sidebar.desk.files.remove(FileUrl("/r/a"));
    sidebar.desk.files.addFolder("/r/a");
    sidebar.draw();
    CHECK(sidebar.row("/r/a").count == 0);
    CHECK_FALSE(sidebar.view->isBranch(sidebar.node("/r/a")));
}

TEST_CASE("changes in quick succession still show something, and in the end the last state")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    for (auto const* path : { "/r/b", "/r/c", "/r/d" }) {
        sidebar.desk.files.addFolder(path);
        sidebar.desk.model().refreshTree();
        sidebar.desk.loop.settle();
    }
    CHECK(sidebar.desk.background.pending() == 1);
    sidebar.desk.finish(0);
    CHECK(sidebar.names().size() == 5);
    sidebar.desk.files.addFolder("/r/e");
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a", "b", "c", "d", "e" });
}

TEST_CASE("what an old tree asked for is dropped with it")
{
    Sidebar sidebar { "/r/a/b", "/q" };
    sidebar.openRoot("/r");
    sidebar.expand(sidebar.node("/r/a"));
    sidebar.view->rowsDrawn(sidebar.rows());
    CHECK(sidebar.desk.background.pending() > 0);
    sidebar.desk.model().setRoot(FileUrl("/q"), AlsoSelect::no);
    sidebar.draw();
    CHECK(sidebar.names() == Names { "q" });
}

TEST_CASE("an unreadable folder is a leaf without photos and asked again after a refresh only")
{
    Sidebar sidebar { "/r/a/b" };
    sidebar.desk.files.unreadable.insert(FileUrl("/r/a"));
    sidebar.openRoot("/r");
    CHECK_FALSE(sidebar.view->isBranch(sidebar.node("/r/a")));
    CHECK(sidebar.row("/r/a").helpText() == "/r/a\n0 Fotos direkt in diesem Ordner");
    sidebar.desk.files.unreadable.clear();
    sidebar.draw();
    CHECK_FALSE(sidebar.view->isBranch(sidebar.node("/r/a")));
    sidebar.desk.model().refreshTree();
    sidebar.draw();
    CHECK(sidebar.view->isBranch(sidebar.node("/r/a")));
}

TEST_CASE("rows are counted when they are drawn, and again when counts are out of date")
{
    Sidebar sidebar { "/r/a" };
    sidebar.desk.files.addFile(FileUrl("/r/a/1.jpg"));
    sidebar.openRoot("/r");
    CHECK(sidebar.row("/r/a").count == 1);
    auto const listings = sidebar.desk.files.listings().size();
    sidebar.draw();
    CHECK(sidebar.desk.files.listings().size() == listings);
    sidebar.desk.files.addFile(FileUrl("/r/a/2.jpg"));
    CHECK(sidebar.row("/r/a").count == 1);
    sidebar.desk.model().refreshTree();
    sidebar.draw();
    CHECK(sidebar.row("/r/a").count == 2);
}

TEST_CASE("a row that leaves the screen is listed and counted when it is back")
{
    Sidebar sidebar { "/r/a" };
    sidebar.desk.model().open(FileUrl("/r"));
    sidebar.desk.settle();
    sidebar.view->rowsDrawn(sidebar.rows());
    sidebar.view->rowsDrawn({});
    auto const before = sidebar.desk.files.listings().size();
    sidebar.desk.settle();
    CHECK(sidebar.desk.files.listings().size() == before);
    CHECK_FALSE(sidebar.node("/r/a").loaded());
    CHECK_FALSE(sidebar.row("/r/a").count);
    sidebar.draw();
    CHECK(sidebar.node("/r/a").loaded());
    CHECK(sidebar.row("/r/a").count == 0);
}

TEST_CASE("counting has the lowest priority")
{
    Sidebar sidebar { "/r" };
    sidebar.desk.model().open(FileUrl("/r"));
    sidebar.desk.settle();
    sidebar.view->rowsDrawn(sidebar.rows());
    CHECK(sidebar.desk.background.lastPriority == Priority::utility);
}

TEST_CASE("folders that the user chooses are shown a turn later, and the focus stays")
{
    Sidebar sidebar { "/r/a", "/r/b" };
    sidebar.openRoot("/r");
    auto const focused = sidebar.desk.window.focusCount;
    std::vector<FolderNode*> const chosen { &sidebar.node("/r/b"), &sidebar.node("/r/a") };
    sidebar.view->choose(chosen, SidebarView::Others::drop);
    CHECK(sidebar.desk.model().folders->size() == 1);
    sidebar.desk.loop.settle();
    CHECK(*sidebar.desk.model().folders == std::vector { FileUrl("/r/a"), FileUrl("/r/b") });
    CHECK(sidebar.desk.window.focusCount == focused);
    CHECK(sidebar.row("/r/a").isCurrent);
    CHECK_FALSE(sidebar.row("/r").isCurrent);
    CHECK(
        sidebar.view->shownNodes() == std::vector { &sidebar.node("/r/a"), &sidebar.node("/r/b") });
}

TEST_CASE("choosing nothing changes nothing")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    sidebar.view->choose({}, SidebarView::Others::drop);
    sidebar.desk.settle();
    CHECK(*sidebar.desk.model().folders == std::vector { FileUrl("/r") });
}

TEST_CASE("a folder added to the choice keeps those that have no row")
{
    Sidebar sidebar { "/r/a", "/r/b", "/q" };
    sidebar.openRoot("/q");
    sidebar.desk.model().setRoot(FileUrl("/r"), AlsoSelect::no);
    sidebar.draw();
    std::vector<FolderNode*> const chosen { &sidebar.node("/r/a") };
    sidebar.view->choose(chosen, SidebarView::Others::keep);
    sidebar.desk.settle();
    CHECK(*sidebar.desk.model().folders == std::vector { FileUrl("/q"), FileUrl("/r/a") });
    sidebar.view->choose(chosen, SidebarView::Others::drop);
    sidebar.desk.settle();
    CHECK(*sidebar.desk.model().folders == std::vector { FileUrl("/r/a") });
}

TEST_CASE("the menu changes which folders are shown")
{
    Sidebar sidebar { "/r/a", "/r/b" };
    sidebar.openRoot("/r");
    auto& model = sidebar.desk.model();
    auto const perform = [&](FolderCommand command, char const* path) {
        sidebar.view->perform(command, FileUrl(path));
        sidebar.draw();
    };
    perform(FolderCommand::addToSelection, "/r/b");
    CHECK(*model.folders == std::vector { FileUrl("/r"), FileUrl("/r/b") });
    perform(FolderCommand::removeFromSelection, "/r");
    CHECK(*model.folders == std::vector { FileUrl("/r/b") });
    perform(FolderCommand::showOnly, "/r/a");
    CHECK(*model.folders == std::vector { FileUrl("/r/a") });
    CHECK(sidebar.desk.window.focusCount == 1); // by opening the root
    perform(FolderCommand::makeRoot, "/r/b");
    CHECK(*model.rootFolder == FileUrl("/r/b"));
    CHECK(*model.folders == std::vector { FileUrl("/r/b") });
    CHECK(sidebar.names() == Names { "b" });
}

TEST_CASE("removing from the selection takes every entry of the folder")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    auto& model = sidebar.desk.model();
    model.selectFolders({ FileUrl("/r/a"), FileUrl("/r/a"), FileUrl("/r") }, FocusGallery::no);
    sidebar.draw();
    CHECK(model.folders->size() == 3);
    sidebar.view->perform(FolderCommand::removeFromSelection, FileUrl("/r/a"));
    CHECK(*model.folders == std::vector { FileUrl("/r") });
}

TEST_CASE("the menu shows a folder in the file manager and reloads the tree with the gallery")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    sidebar.view->perform(FolderCommand::reveal, FileUrl("/r/a"));
    REQUIRE(sidebar.desk.workspace.revealed.size() == 1);
    CHECK(sidebar.desk.workspace.revealed[0] == std::vector { FileUrl("/r/a") });
    auto& model = sidebar.desk.model();
    int const tree = model.treeVersion;
    int const counts = model.countsVersion;
    int const scan = model.scanGeneration();
    sidebar.view->perform(FolderCommand::reloadTree, FileUrl("/r/a"));
    CHECK(model.treeVersion == tree + 1);
    CHECK(model.countsVersion == counts + 1);
    CHECK(model.scanGeneration() == scan + 1);
}

TEST_CASE("the header's buttons refresh the tree alone, and go up as far as there is an up")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r/a");
    auto& model = sidebar.desk.model();
    int const tree = model.treeVersion;
    int const scan = model.scanGeneration();
    sidebar.view->refresh();
    CHECK(model.treeVersion == tree + 1);
    CHECK(model.scanGeneration() == scan);
    CHECK(sidebar.view->canGoUp());
    sidebar.view->goUp();
    sidebar.draw();
    CHECK(*model.rootFolder == FileUrl("/r"));
    CHECK(*model.folders == std::vector { FileUrl("/r/a") });
    CHECK(sidebar.names() == Names { "r", "a" });
    sidebar.view->goUp();
    sidebar.draw();
    CHECK(*model.rootFolder == FileUrl("/"));
    CHECK_FALSE(sidebar.view->canGoUp());
    sidebar.view->goUp();
    CHECK(*model.rootFolder == FileUrl("/"));
    sidebar.view->openFolder();
    CHECK(sidebar.desk.panels.requests.size() == 1);
}

TEST_CASE("the watcher's report brings a new folder into the tree")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    int const scan = sidebar.desk.model().scanGeneration();
    sidebar.desk.files.addFolder("/r/neu");
    sidebar.desk.folderEvents.report();
    sidebar.draw();
    CHECK(sidebar.names() == Names { "r", "a", "neu" });
    CHECK(sidebar.desk.model().scanGeneration() == scan);
}

TEST_CASE("on a network drive a new folder below a drawn row is found after a few seconds")
{
    Sidebar sidebar { "/r/a" };
    sidebar.desk.folderEvents.remote = { FileUrl("/r"), FileUrl("/r/a") };
    sidebar.openRoot("/r");
    auto const pass = [&] {
        sidebar.desk.loop.advance(UnreportedFolders::interval);
        sidebar.draw();
    };
    int const tree = sidebar.desk.model().treeVersion;
    pass();
    CHECK(sidebar.desk.model().treeVersion == tree);
    sidebar.desk.files.addFolder("/r/neu");
    sidebar.desk.files.setModified(FileUrl("/r"), Timestamp(std::chrono::nanoseconds(7)));
    pass();
    CHECK(sidebar.names() == Names { "r", "a", "neu" });
}

TEST_CASE("a tree that is read anew asks again which of its folders others can change unseen")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    auto const pass = [&] {
        sidebar.desk.loop.advance(UnreportedFolders::interval);
        sidebar.draw();
    };
    pass();
    sidebar.desk.folderEvents.remote = { FileUrl("/r"), FileUrl("/r/a") }; // mounted since
    sidebar.view->refresh();
    sidebar.draw();
    pass();
    sidebar.desk.files.addFolder("/r/neu");
    sidebar.desk.files.setModified(FileUrl("/r"), Timestamp(std::chrono::nanoseconds(7)));
    pass();
    CHECK(sidebar.names() == Names { "r", "a", "neu" });
}

TEST_CASE("a sidebar that goes takes its work along")
{
    Sidebar sidebar { "/r/a" };
    sidebar.openRoot("/r");
    sidebar.desk.model().refreshTree();
    sidebar.desk.loop.settle();
    std::vector<FolderNode*> const chosen { &sidebar.node("/r/a") };
    sidebar.view->choose(chosen, SidebarView::Others::drop);
    sidebar.observation = Observation();
    sidebar.view.reset();
    sidebar.desk.settle();
    CHECK(*sidebar.desk.model().folders == std::vector { FileUrl("/r") });
}
