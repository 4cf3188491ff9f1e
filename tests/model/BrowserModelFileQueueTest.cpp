#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

using Index = std::optional<std::size_t>;
using Calls = std::vector<std::string>;

struct Gallery : Desk {
    explicit Gallery(Names const& names = { "1.jpg", "2.jpg", "3.jpg", "4.jpg", "5.jpg" })
    {
        open("/b", names);
        folder("/z");
    }

    static FileUrl photo(int number) { return FileUrl("/b/" + std::to_string(number) + ".jpg"); }

    /// Does something in the middle of the call with this number, counted from 1.
    void during(std::size_t call, std::function<void()> act)
    {
        operations.during = [this, call, act = std::move(act)] {
            if (operations.calls.size() == call)
                act();
        };
    }

    std::vector<FileUrl> undoable()
    {
        std::vector<FileUrl> urls;
        for (auto const& photo : model().lastTrashed())
            urls.push_back(photo.original);
        return urls;
    }
    Index viewer() { return *model().viewerIndex; }
};

} // namespace

TEST_CASE("trashing twice quickly in the viewer trashes two successive photos, none twice")
{
    Gallery desk;
    desk.model().openViewer(1);
    desk.model().trashTargets();
    desk.model().trashTargets();
    CHECK(desk.viewer() == Index(1));
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/2.jpg", "trash /b/3.jpg" });
    CHECK(desk.names() == Names { "1.jpg", "4.jpg", "5.jpg" });
    CHECK(desk.viewer() == Index(1));
    CHECK(desk.undoable() == std::vector { Gallery::photo(3) });
}

TEST_CASE("at the end of the list the photos before it follow, and at last none")
{
    Gallery desk({ "1.jpg", "2.jpg" });
    desk.model().openViewer(1);
    for (int i = 0; i < 4; ++i)
        desk.model().trashTargets();
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/2.jpg", "trash /b/1.jpg" });
    CHECK_FALSE(desk.viewer().has_value());
}

TEST_CASE("a photo that failed is tried again by the second command, as it is still shown")
{
    Gallery desk;
    desk.model().openViewer(1);
    desk.operations.failing = { Gallery::photo(2) };
    desk.model().trashTargets();
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/2.jpg", "trash /b/2.jpg" });
    CHECK(desk.viewer() == Index(1));
}

TEST_CASE("a waiting command takes the photo that was shown when it was given")
{
    Gallery desk;
    desk.model().openViewer(0);
    desk.model().trashTargets();
    desk.model().stepViewer(+1);
    desk.model().trashTargets();
    desk.model().stepViewer(+1);
    desk.model().stepViewer(+1);
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/1.jpg", "trash /b/2.jpg" });
    CHECK(desk.names() == Names { "3.jpg", "4.jpg", "5.jpg" });
    CHECK(desk.viewer() == Index(1));
}

TEST_CASE("a waiting command takes the photos that were marked when it was given")
{
    Gallery desk;
    desk.model().openViewer(4);
    desk.model().trashTargets();
    desk.model().closeViewer();
    desk.model().toggle(0);
    desk.model().toggle(1);
    desk.model().trashTargets();
    desk.model().selectNone();
    desk.model().toggle(2);
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/5.jpg", "trash /b/1.jpg", "trash /b/2.jpg" });
    CHECK(desk.marked() == Names { "3.jpg" });
}

TEST_CASE("marked photos that the first command took are no targets of the second")
{
    Gallery desk;
    desk.model().moveCursor(+1, Extend::no);
    desk.model().toggle(1);
    desk.model().toggle(2);
    desk.operations.failing = { Gallery::photo(3) };
    desk.model().trashTargets();
    desk.model().trashTargets();
    SUBCASE("what failed is tried again") { }
    SUBCASE("then the photo under the cursor is meant")
    {
        desk.operations.failing = {};
        desk.settle();
        CHECK(desk.operations.calls
            == Calls { "trash /b/2.jpg", "trash /b/3.jpg", "trash /b/1.jpg" });
        return;
    }
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/2.jpg", "trash /b/3.jpg", "trash /b/3.jpg" });
}

TEST_CASE("undo given while photos go to the trash brings them back")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().toggle(1);
    desk.model().trashTargets();
    desk.model().undoTrash();
    desk.settle();
    CHECK(desk.names().size() == 5);
    CHECK(desk.status() == "2 Fotos wiederhergestellt");
    CHECK(desk.marked().empty());
}

TEST_CASE("messages follow in the order of the commands")
{
    Gallery desk;
    Names messages;
    LastSeen<std::optional<std::string>> last;
    auto const observation = desk.model().observe([&] {
        if (last.changed(*desk.model().status))
            messages.push_back(desk.status());
    });
    desk.model().openViewer(0);
    desk.model().moveOrCopyTargets(Transfer::copy);
    desk.panels.choose(FileUrl("/z"));
    desk.model().trashTargets();
    while (desk.background.pending() > 0)
        desk.finish(0);
    CHECK(messages
        == Names { "", "1 Foto nach „z“ kopiert",
            "1 Foto in den Papierkorb gelegt – ⌘Z macht es rückgängig" });
}

TEST_CASE("the panel does not wait for a copy, but for photos that are taken away")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().toggle(1);
    desk.model().moveOrCopyTargets(Transfer::copy);
    desk.panels.choose(FileUrl("/z"));
    desk.model().moveOrCopyTargets(Transfer::move);
    REQUIRE(desk.panels.requests.size() == 2);
    desk.panels.choose(FileUrl("/z"));
    desk.model().moveOrCopyTargets(Transfer::copy);
    CHECK(desk.panels.requests.size() == 2);
    desk.settle();
    CHECK(desk.names() == Names { "3.jpg", "4.jpg", "5.jpg" });
    CHECK(desk.panels.requests.size() == 2); // nothing was left to copy
    CHECK(desk.files.exists(FileUrl("/z/1 2.jpg")));
}

TEST_CASE("long work shows its progress in the status bar's field")
{
    Gallery desk;
    desk.model().selectAll();
    std::vector<std::optional<FileProgress>> shown;
    desk.operations.during = [&] {
        desk.loop.advance(100ms);
        shown.push_back(*desk.model().fileProgress);
    };
    desk.model().trashTargets();
    desk.settle();
    REQUIRE(shown.size() == 5);
    CHECK_FALSE(shown[0].has_value());
    CHECK(shown[1] == FileProgress { 1, 5 });
    CHECK(shown[4] == FileProgress { 4, 5 });
    CHECK_FALSE(desk.model().fileProgress->has_value());
}

TEST_CASE("Escape cancels long work first; what was done stands and is told")
{
    Gallery desk;
    desk.model().selectAll();
    bool consumed = false;
    bool stillMarked = false;
    desk.during(3, [&] {
        desk.loop.advance(200ms);
        consumed = desk.press({ .keyCode = keyCodes::escape, .focus = KeyFocus::tableView });
        stillMarked = desk.marked().size() == 5;
    });
    desk.model().trashTargets();
    desk.model().trashTargets();
    desk.settle();
    CHECK(consumed);
    CHECK(stillMarked);
    CHECK(desk.operations.calls.size() == 3);
    CHECK(desk.status() == "3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig");
    CHECK(desk.names() == Names { "4.jpg", "5.jpg" });
    CHECK(
        desk.undoable() == std::vector { Gallery::photo(1), Gallery::photo(2), Gallery::photo(3) });
    desk.operations.during = nullptr;
    desk.model().undoTrash();
    desk.settle();
    CHECK(desk.names().size() == 5);
}

TEST_CASE("while no progress shows Escape has its other meaning")
{
    Gallery desk;
    desk.model().openViewer(0);
    desk.model().trashTargets();
    desk.during(1, [&] {
        desk.loop.advance(199ms);
        CHECK(desk.press(keyCodes::escape));
    });
    desk.settle();
    CHECK_FALSE(desk.viewer().has_value());
    CHECK(desk.names().size() == 4);
}

TEST_CASE("Escape in a text is the text's, and long work goes on")
{
    Gallery desk;
    desk.model().selectAll();
    desk.during(1, [&] {
        desk.loop.advance(200ms);
        CHECK_FALSE(desk.press({ .keyCode = keyCodes::escape, .focus = KeyFocus::textView }));
    });
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.operations.calls.size() == 5);
}

TEST_CASE("Escape leaves a photo that is shown large, and long work goes on")
{
    Gallery desk;
    desk.model().selectAll();
    desk.during(1, [&] {
        desk.loop.advance(200ms);
        desk.model().openViewer(4);
        CHECK(desk.press(keyCodes::escape));
        CHECK_FALSE(desk.viewer().has_value());
    });
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.operations.calls.size() == 5);
}

TEST_CASE("Escape under a dialog is the dialog's")
{
    Gallery desk;
    desk.model().selectAll();
    desk.during(1, [&] {
        desk.loop.advance(200ms);
        CHECK_FALSE(desk.press({ .keyCode = keyCodes::escape, .windowHasSheet = true }));
    });
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.operations.calls.size() == 5);
}

TEST_CASE("a cancelled move leaves the rest where it was, marked, and not counted as failed")
{
    Gallery desk;
    desk.model().selectAll();
    desk.operations.stuck = { Gallery::photo(3) };
    desk.during(3, [&] {
        desk.loop.advance(200ms);
        desk.press(keyCodes::escape);
    });
    desk.model().moveOrCopyTargets(Transfer::move);
    desk.panels.choose(FileUrl("/z"));
    desk.settle();
    CHECK(desk.status() == "2 Fotos nach „z“ verschoben");
    CHECK(desk.names() == Names { "3.jpg", "4.jpg", "5.jpg" });
    CHECK(desk.marked() == Names { "3.jpg", "4.jpg", "5.jpg" });
    CHECK_FALSE(desk.files.exists(FileUrl("/z/3.jpg")));
}

TEST_CASE("a cancelled undo keeps the rest for the next one")
{
    Gallery desk;
    desk.model().selectAll();
    desk.model().trashTargets();
    desk.settle();
    desk.operations.calls.clear();
    desk.during(2, [&] {
        desk.loop.advance(200ms);
        desk.press(keyCodes::escape);
    });
    desk.model().undoTrash();
    desk.settle();
    CHECK(desk.status() == "2 Fotos wiederhergestellt");
    CHECK(desk.names() == Names { "1.jpg", "2.jpg" });
    CHECK(*desk.model().canUndoTrash);
    desk.operations.during = nullptr;
    desk.model().undoTrash();
    desk.settle();
    CHECK(desk.status() == "3 Fotos wiederhergestellt");
    CHECK(desk.names().size() == 5);
    CHECK_FALSE(*desk.model().canUndoTrash);
}

TEST_CASE("work that is cancelled before its first file takes nothing from what can be undone")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().trashTargets();
    desk.settle();
    desk.model().toggle(0);
    desk.model().trashTargets();
    desk.loop.advance(200ms);
    REQUIRE(desk.model().fileProgress->has_value());
    CHECK(desk.press(keyCodes::escape));
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/1.jpg" });
    CHECK(desk.undoable() == std::vector { Gallery::photo(1) });
    CHECK(desk.marked() == Names { "2.jpg" });
}

TEST_CASE("photos that reach the trash after other folders were shown can be undone")
{
    Gallery desk;
    desk.folder("/c", { "7.jpg" });
    desk.model().selectAll();
    desk.model().trashTargets();
    desk.during(2, [&] {
        desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
        CHECK_FALSE(*desk.model().canUndoTrash);
    });
    desk.settle();
    CHECK(desk.names() == Names { "7.jpg" });
    CHECK(*desk.model().canUndoTrash);
    CHECK(desk.undoable().size() == 5);
    desk.operations.during = nullptr;
    desk.model().undoTrash();
    desk.settle();
    CHECK(desk.status() == "5 Fotos wiederhergestellt");
    for (int i = 1; i <= 5; ++i)
        CHECK(desk.files.exists(Gallery::photo(i)));
    CHECK(desk.names() == Names { "7.jpg" });
}

TEST_CASE("a command that waits when other folders are shown keeps to the photos it was given for")
{
    Gallery desk;
    desk.folder("/c", { "7.jpg", "8.jpg" });
    desk.model().openViewer(0);
    desk.model().trashTargets();
    desk.model().stepViewer(+1);
    desk.model().trashTargets();
    desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
    desk.background.finish(1); // the scan ends first
    desk.loop.settle();
    desk.model().openViewer(0);
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/1.jpg", "trash /b/2.jpg" });
    CHECK(desk.names() == Names { "7.jpg", "8.jpg" });
    CHECK(desk.viewer() == Index(0));
}

TEST_CASE("a scan that saw photos before they went does not bring them back")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().toggle(1);
    desk.model().toggle(2);
    desk.operations.failing = { Gallery::photo(3) };
    desk.model().trashTargets();
    desk.model().reload();
    REQUIRE(desk.background.pending() == 2);
    SUBCASE("nor does one whose answer comes after the photos went")
    {
        // The scan has listed the folder when the photos go.
        desk.files.afterDetails = [&] {
            desk.files.afterDetails = nullptr;
            desk.finish(0);
            CHECK(desk.names() == Names { "3.jpg", "4.jpg", "5.jpg" });
        };
        desk.finish(1);
    }
    SUBCASE("nor one whose answer comes in the middle")
    {
        desk.during(2, [&] {
            desk.finish(0);
            CHECK(desk.names() == Names { "2.jpg", "3.jpg", "4.jpg", "5.jpg" });
        });
        desk.finish(0);
    }
    SUBCASE("nor one whose answer comes before")
    {
        desk.finish(1);
        CHECK(desk.names().size() == 5);
        desk.finish(0);
    }
    desk.settle();
    CHECK(desk.names() == Names { "3.jpg", "4.jpg", "5.jpg" });
    CHECK(desk.model().allItems().size() == 3);
    CHECK(desk.marked() == Names { "3.jpg" });
    desk.model().setSearchText("3");
    CHECK(desk.names() == Names { "3.jpg" });
}

TEST_CASE("a scan in the middle of trashing lets the viewer go on to the next photo too")
{
    Gallery desk;
    desk.model().openViewer(1);
    desk.model().trashTargets();
    desk.model().trashTargets();
    desk.model().reload();
    desk.background.finish(0); // the photo is in the trash, the model has not heard of it
    desk.background.finish(0); // the scan finds it gone
    desk.loop.settle();
    CHECK(desk.viewer() == Index(1));
    desk.settle();
    CHECK(desk.operations.calls == Calls { "trash /b/2.jpg", "trash /b/3.jpg" });
    CHECK(desk.names() == Names { "1.jpg", "4.jpg", "5.jpg" });
    CHECK(desk.viewer() == Index(1));
}

TEST_CASE("photos put back while a scan runs are shown by the next one")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().trashTargets();
    desk.settle();
    desk.model().reload();
    desk.model().undoTrash();
    desk.finish(0); // sees the folder without the photo
    CHECK(desk.names().size() == 4);
    desk.settle();
    CHECK(desk.names().size() == 5);
}

TEST_CASE("at the end the file under way is finished, the rest is not begun")
{
    Gallery desk;
    desk.model().selectAll();
    desk.model().trashTargets();
    desk.model().trashTargets();
    bool stopped = false;
    desk.during(2, [&] { desk.model().stopFileWork([&] { stopped = true; }); });
    CHECK(desk.model().isBusyWithFiles());
    desk.background.finish(0);
    CHECK_FALSE(stopped);
    desk.loop.settle();
    CHECK(stopped);
    CHECK_FALSE(desk.model().isBusyWithFiles());
    CHECK(desk.operations.calls.size() == 2);
    CHECK(desk.files.exists(Gallery::photo(3)));
}

TEST_CASE("a model that goes in the middle ends after the file under way")
{
    Gallery desk;
    desk.model().selectAll();
    desk.model().trashTargets();
    desk.during(2, [&] { desk.browser.reset(); });
    desk.background.finishAll();
    desk.loop.settle();
    desk.loop.advance(1s);
    CHECK(desk.operations.calls.size() == 2);
    CHECK(desk.files.exists(Gallery::photo(3)));
}

TEST_CASE("filtering while photos are moved changes nothing about what is moved")
{
    Gallery desk;
    desk.model().toggle(0);
    desk.model().toggle(4);
    desk.model().moveOrCopyTargets(Transfer::move);
    desk.panels.choose(FileUrl("/z"));
    desk.model().setSearchText("5");
    desk.settle();
    CHECK(desk.names().empty());
    desk.model().setSearchText("");
    CHECK(desk.names() == Names { "2.jpg", "3.jpg", "4.jpg" });
    CHECK(desk.marked().empty());
}
