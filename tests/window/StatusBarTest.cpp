#include "window/StatusBar.h"
#include "support/LongList.h"
#include <chrono>
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("one photo reads 1 Fotos")
{
    Desk desk;
    desk.open("/b", { "1.jpg" });
    StatusBar const bar(desk.model());
    CHECK(bar.countText() == "1 Fotos");
    CHECK_FALSE(bar.showsSelectNone());
    CHECK_FALSE(bar.message().has_value());
}

TEST_CASE("three of forty marked read 40 Fotos · 3 ausgewählt, with a link to unmark them")
{
    Desk desk;
    Names names;
    for (int i = 0; i < 40; ++i)
        names.push_back(std::to_string(i) + ".jpg");
    desk.open("/b", names);
    for (std::size_t index : { 3U, 5U, 39U })
        desk.model().toggle(index);
    StatusBar bar(desk.model());
    CHECK(bar.countText() == "40 Fotos \u00B7 3 ausgewählt");
    CHECK(bar.showsSelectNone());
    CHECK(StatusBar::selectNoneTitle == "Auswahl aufheben");
    bar.selectNone();
    CHECK(bar.countText() == "40 Fotos");
    CHECK_FALSE(bar.showsSelectNone());
}

TEST_CASE("large counts are written without grouping")
{
    Desk desk;
    Names names;
    for (int i = 0; i < 1234; ++i)
        names.push_back(std::to_string(i) + ".jpg");
    desk.open("/b", names);
    CHECK(StatusBar(desk.model()).countText() == "1234 Fotos");
}

TEST_CASE("marked photos count even if the filter hides them")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    desk.model().toggle(0);
    desk.model().setSearchText("2");
    CHECK(StatusBar(desk.model()).countText() == "1 Fotos · 1 ausgewählt");
}

TEST_CASE("activity shows while a scan is under way")
{
    Desk desk;
    desk.folder("/b");
    StatusBar const bar(desk.model());
    CHECK_FALSE(bar.showsActivity());
    desk.model().selectFolders({ FileUrl("/b") }, FocusGallery::no);
    CHECK(bar.showsActivity());
    desk.settle();
    CHECK_FALSE(bar.showsActivity());
}

TEST_CASE("activity shows while a long list is searched for longer than a moment")
{
    LongList test;
    StatusBar const bar(test.model());
    CHECK(bar.activityName() == "Fotos werden durchsucht");
    test.model().setSearchText("b");
    CHECK_FALSE(bar.showsActivity());
    test.desk.loop.advance(std::chrono::seconds(1));
    CHECK(bar.showsActivity());
    CHECK(bar.activityName() == "Fotos werden durchsucht");
    test.desk.settle();
    CHECK_FALSE(bar.showsActivity());
    test.model().startScan();
    CHECK(bar.activityName() == "Ordner wird gelesen");
}

TEST_CASE("the message is the model's")
{
    Desk desk;
    desk.model().showStatus("Fertig");
    CHECK(StatusBar(desk.model()).message() == "Fertig");
}

TEST_CASE("the progress of long work has a place of its own beside the message")
{
    using namespace std::chrono_literals;
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg", "3.jpg" });
    StatusBar const bar(desk.model());
    CHECK_FALSE(bar.progress().has_value());
    desk.model().showStatus("Fertig");
    desk.model().selectAll();
    desk.operations.during = [&] {
        if (desk.operations.calls.size() != 3)
            return;
        desk.loop.advance(200ms);
        CHECK(bar.progress() == "2 von 3");
        CHECK(bar.message() == "Fertig");
    };
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.operations.calls.size() == 3);
    CHECK_FALSE(bar.progress().has_value());
}

TEST_CASE("a document shows the page it is at, behind changes of files")
{
    using namespace std::chrono_literals;
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    StatusBar const bar(desk.model());
    desk.model().pageWork().give({ {}, [&](auto const&) {
                                      desk.model().pageWork().run(
                                          34,
                                          [&](FileRun& run) {
                                              run.handled = 2;
                                              desk.loop.advance(200ms);
                                              CHECK(bar.progress() == "Seite 3 von 34");
                                              run.handled = 34;
                                              desk.loop.advance(100ms);
                                              CHECK(bar.progress() == "Seite 34 von 34");
                                              return true;
                                          },
                                          [](bool) {});
                                  } });
    desk.settle();
    CHECK_FALSE(bar.progress().has_value());
}
