#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

TEST_CASE("a message stays for five seconds")
{
    Desk desk;
    desk.model().showStatus("eins");
    desk.loop.advance(4999ms);
    CHECK(*desk.model().status == "eins");
    desk.loop.advance(1ms);
    CHECK_FALSE(desk.model().status->has_value());
}

TEST_CASE("a newer message stays until five seconds after it was shown")
{
    Desk desk;
    desk.model().showStatus("eins");
    desk.loop.advance(3s);
    desk.model().showStatus("zwei");
    desk.loop.advance(4999ms);
    CHECK(*desk.model().status == "zwei");
    desk.loop.advance(1ms);
    CHECK_FALSE(desk.model().status->has_value());
}

TEST_CASE("the same message shown again starts its five seconds again")
{
    Desk desk;
    desk.model().showStatus("eins");
    desk.loop.advance(3s);
    desk.model().showStatus("eins");
    desk.loop.advance(3s);
    CHECK(*desk.model().status == "eins");
}

TEST_CASE("a message outlives no model")
{
    Desk desk;
    desk.model().showStatus("eins");
    desk.browser.reset();
    desk.loop.advance(6s);
    CHECK_FALSE(desk.browser.has_value());
}

TEST_CASE("changes of folders below the root refresh the tree, not the gallery")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    auto const tree = desk.model().treeVersion.get();
    auto const counts = desk.model().countsVersion.get();
    desk.folderEvents.report();
    CHECK(*desk.model().treeVersion == tree + 1);
    CHECK(*desk.model().countsVersion == counts + 1);
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("folder changes reported after the model has gone do nothing")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    auto const stream = desk.folderEvents.streams.back();
    desk.browser.reset();
    CHECK_FALSE(stream->running);
    stream->folderChanged();
}

TEST_CASE("the gallery has at least one column")
{
    Desk desk;
    CHECK(desk.model().columns() == 1);
    desk.model().setColumns(0);
    CHECK(desk.model().columns() == 1);
    desk.model().setColumns(5);
    CHECK(desk.model().columns() == 5);
}

TEST_CASE("marking a photo twice unmarks it, an index out of range marks nothing")
{
    Desk desk;
    auto const folder = desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().toggle(1);
    desk.model().toggle(2);
    CHECK(*desk.model().selection == UrlSet { folder.child("2.jpg") });
    desk.model().toggle(1);
    CHECK(desk.model().selection->empty());
    desk.model().toggle(0);
    desk.model().selectNone();
    CHECK(desk.model().selection->empty());
}

TEST_CASE("the viewer opens within the photos only, and leaves the cursor on its photo")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().openViewer(2);
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK_FALSE(desk.model().cursor->has_value());
    desk.model().closeViewer();
    CHECK_FALSE(desk.model().cursor->has_value());
    desk.model().openViewer(1);
    desk.model().closeViewer();
    CHECK_FALSE(desk.model().viewerIndex->has_value());
    CHECK(*desk.model().cursor == 1);
}
