#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Index = std::optional<std::size_t>;
using Calls = std::vector<std::string>;

constexpr char const* oneTrashed = "1 Foto in den Papierkorb gelegt – ⌘Z macht es rückgängig";
constexpr char const* twoTrashed = "2 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig";

struct Gallery : Desk {
    explicit Gallery(Names const& names = { "1.jpg", "2.jpg", "3.jpg", "4.jpg" })
    {
        open("/b", names);
        folder("/z");
    }

    static FileUrl photo(int number) { return FileUrl("/b/" + std::to_string(number) + ".jpg"); }

    void mark(std::initializer_list<std::size_t> indexes)
    {
        for (auto const index : indexes)
            model().toggle(index);
    }
    void trash()
    {
        model().trashTargets();
        settle();
    }
    void undo()
    {
        model().undoTrash();
        settle();
    }
    void transfer(Transfer transfer, FileUrl const& target = FileUrl("/z"))
    {
        model().moveOrCopyTargets(transfer);
        settle();
        panels.choose(target);
        settle();
    }
    Index viewer() { return *model().viewerIndex; }
    Index cursor() { return *model().cursor; }
};

} // namespace

TEST_CASE("marked photos go to the trash and leave the gallery, without a scan")
{
    Gallery desk;
    desk.mark({ 0, 2 });
    auto const counts = desk.model().countsVersion.get();
    auto const scans = desk.model().scanGeneration();
    desk.trash();
    CHECK(desk.status() == twoTrashed);
    CHECK(desk.names() == Names { "2.jpg", "4.jpg" });
    CHECK(desk.model().allItems().size() == 2);
    CHECK(desk.marked().empty());
    CHECK(*desk.model().canUndoTrash);
    CHECK(*desk.model().countsVersion == counts + 1);
    CHECK(desk.model().scanGeneration() == scans);
    CHECK_FALSE(desk.files.exists(Gallery::photo(1)));
    CHECK(desk.files.exists(Gallery::photo(2)));
}

TEST_CASE("with marks that the filter hides the photo at the cursor is not meant instead")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "b2.jpg", "b3.jpg" });
    auto& model = desk.model();
    model.toggle(0);
    model.setSearchText("b");
    model.moveCursor(-1, Extend::no);
    model.trashTargets();
    desk.settle();
    CHECK(model.allItems().size() == 3);
    // Nor when a command before this one takes what was marked and could be seen.
    model.toggle(0);
    model.trashTargets();
    model.trashTargets();
    desk.settle();
    CHECK(desk.names() == Names { "b3.jpg" });
    CHECK(desk.marked() == Names { "1.jpg" });
}

TEST_CASE("the trash command does nothing while text is edited")
{
    Gallery desk;
    desk.mark({ 0 });
    desk.window.editsText = true;
    desk.trash();
    CHECK(desk.operations.calls.empty());
    CHECK(desk.status().empty());
    SUBCASE("but the menu of a cell does")
    {
        desk.model().trash({ Gallery::photo(1) });
        desk.settle();
        CHECK(desk.status() == oneTrashed);
    }
}

TEST_CASE("commands without a target do nothing and say nothing")
{
    Gallery desk;
    desk.trash();
    desk.model().trash({});
    desk.undo();
    desk.model().moveOrCopyTargets(Transfer::move);
    desk.model().copyToClipboard();
    desk.model().revealInFinder();
    desk.model().openWithDefaultApp();
    desk.settle();
    CHECK(desk.operations.calls.empty());
    CHECK(desk.panels.requests.empty());
    CHECK(desk.clipboard.changes == 0);
    CHECK(desk.workspace.revealed.empty());
    CHECK(desk.workspace.opened.empty());
    CHECK(desk.status().empty());
    CHECK_FALSE(desk.model().isBusyWithFiles());
}

TEST_CASE("after trashing the photo in the viewer it shows the next one, at the end the one before")
{
    Gallery desk({ "1.jpg", "2.jpg", "3.jpg" });
    desk.model().openViewer(1);
    desk.trash();
    CHECK(desk.names() == Names { "1.jpg", "3.jpg" });
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.cursor() == Index(1));
    desk.trash();
    CHECK(desk.viewer() == Index(0));
    desk.trash();
    CHECK_FALSE(desk.viewer().has_value());
    CHECK_FALSE(desk.cursor().has_value());
    CHECK(desk.names().empty());
    CHECK(desk.status() == oneTrashed);
}

TEST_CASE("in the viewer only its photo goes; what is marked stays marked")
{
    Gallery desk;
    desk.mark({ 0, 1, 3 });
    desk.model().openViewer(1);
    desk.trash();
    CHECK(desk.operations.calls == Calls { "trash /b/2.jpg" });
    CHECK(desk.marked() == Names { "1.jpg", "4.jpg" });
}

TEST_CASE("photos that fail to go to the trash stay, and are counted")
{
    Gallery desk;
    desk.mark({ 0, 1, 2, 3 });
    desk.operations.failing = { Gallery::photo(2) };
    desk.trash();
    CHECK(desk.status()
        == "3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig (1 fehlgeschlagen)");
    CHECK(desk.names() == Names { "2.jpg" });
    CHECK(desk.marked() == Names { "2.jpg" });
}

TEST_CASE("if all fail, the message stands with the count 0, and nothing can be undone")
{
    Gallery desk;
    desk.mark({ 3 });
    desk.trash();
    REQUIRE(*desk.model().canUndoTrash);
    desk.mark({ 0, 1 });
    desk.operations.failing = { Gallery::photo(1), Gallery::photo(2) };
    auto const counts = desk.model().countsVersion.get();
    desk.trash();
    CHECK(desk.status()
        == "0 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig (2 fehlgeschlagen)");
    CHECK_FALSE(*desk.model().canUndoTrash);
    CHECK(*desk.model().countsVersion == counts);
    desk.operations.calls.clear();
    desk.undo();
    CHECK(desk.operations.calls.empty());
}

TEST_CASE("undo puts back only the last batch, and only once")
{
    Gallery desk;
    desk.mark({ 0 });
    desk.trash();
    desk.mark({ 0, 1 });
    desk.trash();
    CHECK(desk.names() == Names { "4.jpg" });
    auto const counts = desk.model().countsVersion.get();
    auto const scans = desk.model().scanGeneration();
    desk.undo();
    CHECK(desk.status() == "2 Fotos wiederhergestellt");
    CHECK(desk.names() == Names { "2.jpg", "3.jpg", "4.jpg" });
    CHECK_FALSE(*desk.model().canUndoTrash);
    CHECK(desk.model().lastTrashed().empty());
    CHECK(*desk.model().countsVersion == counts + 1);
    CHECK(desk.model().scanGeneration() == scans + 1);
    desk.operations.calls.clear();
    desk.undo();
    CHECK(desk.operations.calls.empty());
    CHECK_FALSE(desk.files.exists(Gallery::photo(1)));
}

TEST_CASE("undo names only what came back")
{
    Gallery desk;
    desk.mark({ 0, 1, 2 });
    desk.trash();
    desk.files.remove(desk.model().lastTrashed()[0].trashed); // the trash was emptied in part
    desk.files.addFile(Gallery::photo(2)); // another file took the place
    desk.undo();
    CHECK(desk.status() == "1 Foto wiederhergestellt");
    CHECK_FALSE(*desk.model().canUndoTrash);
    CHECK(desk.names() == Names { "2.jpg", "3.jpg", "4.jpg" });
}

TEST_CASE("showing other folders discards what could be undone")
{
    Gallery desk;
    desk.mark({ 0 });
    desk.trash();
    desk.model().selectFolders({ FileUrl("/z") }, FocusGallery::no);
    CHECK_FALSE(*desk.model().canUndoTrash);
    CHECK(desk.model().lastTrashed().empty());
}

TEST_CASE("moving asks for a folder, takes the photos from the gallery and says where they are")
{
    Gallery desk;
    desk.folder("/Urlaub", { "2.jpg" });
    desk.mark({ 1, 2 });
    desk.model().moveOrCopyTargets(Transfer::move);
    REQUIRE(desk.panels.requests.size() == 1);
    auto const& request = desk.panels.requests.back();
    CHECK(request.button == "Hierher verschieben");
    CHECK(request.message == "2 Fotos verschieben nach …");
    CHECK(request.start == *desk.model().folder);
    CHECK(request.mayCreateFolders);
    desk.panels.choose(FileUrl("/Urlaub"));
    desk.settle();
    CHECK(desk.status() == "2 Fotos nach „Urlaub“ verschoben");
    CHECK(desk.names() == Names { "1.jpg", "4.jpg" });
    CHECK(desk.marked().empty());
    CHECK(desk.files.exists(FileUrl("/Urlaub/2 2.jpg")));
    CHECK(desk.files.exists(FileUrl("/Urlaub/3.jpg")));
    CHECK_FALSE(*desk.model().canUndoTrash);
    CHECK(*desk.preferences.text("lastTarget") == "/Urlaub");
    desk.mark({ 0 });
    desk.model().moveOrCopyTargets(Transfer::move);
    CHECK(desk.panels.requests.back().start == FileUrl("/Urlaub"));
    CHECK(desk.panels.requests.back().message == "1 Foto verschieben nach …");
}

TEST_CASE("copying changes neither the gallery nor the marks")
{
    Gallery desk;
    desk.mark({ 1, 2 });
    desk.operations.failing = { Gallery::photo(2) };
    auto const counts = desk.model().countsVersion.get();
    desk.transfer(Transfer::copy, FileUrl("/Archiv"));
    CHECK(desk.panels.requests.back().button == "Hierher kopieren");
    CHECK(desk.panels.requests.back().message == "2 Fotos kopieren nach …");
    CHECK(desk.status() == "1 Foto nach „Archiv“ kopiert (1 fehlgeschlagen)");
    CHECK(desk.names() == Names { "1.jpg", "2.jpg", "3.jpg", "4.jpg" });
    CHECK(desk.marked() == Names { "2.jpg", "3.jpg" });
    CHECK(*desk.model().countsVersion == counts);
}

TEST_CASE("moving the photo in the viewer shows the next one")
{
    Gallery desk;
    desk.model().openViewer(0);
    desk.transfer(Transfer::move);
    CHECK(desk.names() == Names { "2.jpg", "3.jpg", "4.jpg" });
    CHECK(desk.viewer() == Index(0));
}

TEST_CASE("a photo that cannot be moved stays in the gallery")
{
    Gallery desk;
    desk.mark({ 0, 1 });
    desk.operations.failing = { Gallery::photo(1), Gallery::photo(2) };
    desk.transfer(Transfer::move);
    CHECK(desk.status() == "0 Fotos nach „z“ verschoben (2 fehlgeschlagen)");
    CHECK(desk.names().size() == 4);
    CHECK(desk.marked().size() == 2);
}

TEST_CASE("a dismissed panel does nothing and shows nothing")
{
    Gallery desk;
    desk.mark({ 0 });
    desk.model().moveOrCopyTargets(Transfer::copy);
    desk.settle();
    CHECK(desk.operations.calls.empty());
    CHECK(desk.status().empty());
    CHECK_FALSE(desk.preferences.text("lastTarget").has_value());
    CHECK_FALSE(desk.model().isBusyWithFiles());
}

TEST_CASE("a folder chosen after the model has gone moves nothing")
{
    Gallery desk;
    desk.mark({ 0 });
    desk.model().moveOrCopyTargets(Transfer::move);
    desk.browser.reset();
    desk.panels.choose(FileUrl("/z"));
    desk.settle();
    CHECK(desk.operations.calls.empty());
}

TEST_CASE("a stored target that is no path is not where the panel starts")
{
    Gallery desk;
    desk.preferences.values["lastTarget"] = "nonsense";
    desk.mark({ 0 });
    desk.model().moveOrCopyTargets(Transfer::move);
    CHECK(desk.panels.requests.back().start == *desk.model().folder);
}

TEST_CASE("the clipboard gets the targets in order")
{
    Gallery desk;
    desk.mark({ 3, 1 });
    desk.model().copyToClipboard();
    CHECK(desk.clipboard.contents == std::vector { Gallery::photo(2), Gallery::photo(4) });
    CHECK(desk.status() == "2 Fotos in die Zwischenablage kopiert");
    desk.model().openViewer(0);
    desk.model().copyToClipboard();
    CHECK(desk.clipboard.contents == std::vector { Gallery::photo(1) });
    CHECK(desk.status() == "1 Foto in die Zwischenablage kopiert");
}

TEST_CASE("all targets are revealed in one call, and opened in one call each, without a message")
{
    Gallery desk;
    desk.mark({ 3, 1 });
    desk.model().revealInFinder();
    desk.model().openWithDefaultApp();
    auto const both = std::vector { Gallery::photo(2), Gallery::photo(4) };
    REQUIRE(desk.workspace.revealed.size() == 1);
    CHECK(desk.workspace.revealed[0] == both);
    CHECK(desk.workspace.opened == both);
    CHECK(desk.status().empty());
}
