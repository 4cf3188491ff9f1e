#include "sidebar/FolderWatcher.h"
#include "support/FakeFolderEvents.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a batch of folder changes is one change")
{
    FakeFolderEvents events;
    int changes = 0;
    FolderWatcher watcher(&events, [&] { ++changes; });
    watcher.watch(FileUrl("/b"));
    events.report();
    CHECK(changes == 1);
}

TEST_CASE("watching the same folder twice leaves one stream")
{
    FakeFolderEvents events;
    FolderWatcher watcher(&events, [] {});
    watcher.watch(FileUrl("/b"));
    watcher.watch(FileUrl("/b"));
    CHECK(events.running().size() == 1);
}

TEST_CASE("the old stream has ended before the new one begins")
{
    FakeFolderEvents events;
    FolderWatcher watcher(&events, [] {});
    watcher.watch(FileUrl("/b"));
    watcher.watch(FileUrl("/c"));
    REQUIRE(events.streams.size() == 2);
    CHECK(events.streams[1]->othersAtStart == 0);
    CHECK(events.running()[0]->root == FileUrl("/c"));
}

TEST_CASE("watching nothing ends what was watched")
{
    FakeFolderEvents events;
    FolderWatcher watcher(&events, [] {});
    watcher.watch(FileUrl("/b"));
    watcher.watch(std::nullopt);
    CHECK(events.running().empty());
}

TEST_CASE("a watcher that goes ends its stream and hears nothing more")
{
    FakeFolderEvents events;
    int changes = 0;
    {
        FolderWatcher watcher(&events, [&] { ++changes; });
        watcher.watch(FileUrl("/b"));
    }
    CHECK(events.running().empty());
    events.streams[0]->folderChanged();
    CHECK(changes == 0);
}

TEST_CASE("where nothing can be watched the watcher stays quiet and can be asked again")
{
    FakeFolderEvents events;
    events.refuses = true;
    int changes = 0;
    FolderWatcher watcher(&events, [&] { ++changes; });
    watcher.watch(FileUrl("/b"));
    events.report();
    CHECK(changes == 0);
    events.refuses = false;
    watcher.watch(FileUrl("/b"));
    events.report();
    CHECK(changes == 1);
}

TEST_CASE("without a source of events nothing is reported")
{
    int changes = 0;
    FolderWatcher watcher(nullptr, [&] { ++changes; });
    watcher.watch(FileUrl("/b"));
    CHECK(changes == 0);
}
