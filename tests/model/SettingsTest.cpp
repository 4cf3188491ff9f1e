#include "model/Settings.h"
#include "support/Desk.h"
#include <cmath>
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

} // namespace

TEST_CASE("a first start has the defaults and no folder")
{
    Desk desk;
    auto& model = desk.model();
    CHECK(*model.sortKey == SortKey::name);
    CHECK(*model.ascending);
    CHECK_FALSE(*model.includeSubfolders);
    CHECK(*model.thumbSize == 170);
    CHECK(*model.showFilenames);
    CHECK(*model.showResolution);
    CHECK(*model.slideshowInterval == 4);
    CHECK_FALSE(*model.slideshowShuffle);
    CHECK_FALSE(model.folder->has_value());
    CHECK(model.folders->empty());
    CHECK(model.windowTitle() == "Pixelhain");
}

TEST_CASE("a start writes no setting and begins no work")
{
    Desk desk;
    CHECK(desk.preferences.writes.empty());
    CHECK(desk.background.pending() == 0);
}

TEST_CASE("stored sort keys other than date and size give name order")
{
    auto const started = [](FakePreferences::Value stored) {
        Desk desk;
        desk.preferences.values.insert_or_assign("sortKey", std::move(stored));
        desk.start();
        return desk.model().sortKey.get();
    };
    CHECK(started(std::string("date")) == SortKey::date);
    CHECK(started(std::string("size")) == SortKey::size);
    CHECK(started(std::string("name")) == SortKey::name);
    CHECK(started(std::string("Date")) == SortKey::name);
    CHECK(started(std::string()) == SortKey::name);
    CHECK(started(7.0) == SortKey::name);
}

TEST_CASE("stored values of the wrong type give the defaults")
{
    Desk desk;
    for (auto const* key :
        { "ascending", "subfolders", "showFilenames", "showResolution", "shuffle" })
        desk.preferences.values.insert_or_assign(key, std::string("vielleicht"));
    for (auto const* key : { "thumbSize", "interval" })
        desk.preferences.values.insert_or_assign(key, true);
    for (auto const* key : { "lastFolder", "lastFolders", "lastRoot" })
        desk.preferences.values.insert_or_assign(key, 3.0);
    desk.start();
    auto& model = desk.model();
    CHECK(*model.ascending);
    CHECK_FALSE(*model.includeSubfolders);
    CHECK(*model.showFilenames);
    CHECK(*model.showResolution);
    CHECK_FALSE(*model.slideshowShuffle);
    CHECK(*model.thumbSize == 170);
    CHECK(*model.slideshowInterval == 4);
    model.restoreLastFolders();
    desk.settle();
    CHECK_FALSE(model.folder->has_value());
}

TEST_CASE("stored numbers outside their range are brought into it")
{
    auto const started = [](double thumbSize, double interval) {
        Desk desk;
        desk.preferences.values.insert_or_assign("thumbSize", thumbSize);
        desk.preferences.values.insert_or_assign("interval", interval);
        desk.start();
        return std::pair { *desk.model().thumbSize, *desk.model().slideshowInterval };
    };
    CHECK(started(200, 6) == std::pair { 200.0, 6.0 });
    CHECK(started(79, 0.4) == std::pair { 80.0, 0.5 });
    CHECK(started(401, 3601) == std::pair { 400.0, 3600.0 });
    CHECK(started(-5, -1) == std::pair { 80.0, 0.5 });
    CHECK(started(infinite, infinite) == std::pair { 400.0, 3600.0 });
    CHECK(started(-infinite, -infinite) == std::pair { 80.0, 0.5 });
    CHECK(started(notANumber, notANumber) == std::pair { 170.0, 4.0 });
}

TEST_CASE("every setting is stored under its key at once and read at the next start")
{
    Desk desk;
    desk.model().setSortKey(SortKey::date);
    desk.model().setAscending(false);
    desk.model().setIncludeSubfolders(true);
    desk.model().setThumbSize(200.5);
    desk.model().setShowFilenames(false);
    desk.model().setShowResolution(false);
    desk.model().setSlideshowInterval(10);
    desk.model().setSlideshowShuffle(true);

    auto const stored = [&](auto const* key) { return desk.preferences.values.at(key); };
    CHECK(stored("sortKey") == FakePreferences::Value(std::string("date")));
    CHECK(stored("ascending") == FakePreferences::Value(false));
    CHECK(stored("subfolders") == FakePreferences::Value(true));
    CHECK(stored("thumbSize") == FakePreferences::Value(200.5));
    CHECK(stored("showFilenames") == FakePreferences::Value(false));
    CHECK(stored("showResolution") == FakePreferences::Value(false));
    CHECK(stored("interval") == FakePreferences::Value(10.0));
    CHECK(stored("shuffle") == FakePreferences::Value(true));

    desk.start();
    CHECK(*desk.model().sortKey == SortKey::date);
    CHECK_FALSE(*desk.model().ascending);
    CHECK(*desk.model().includeSubfolders);
    CHECK(*desk.model().thumbSize == 200.5);
    CHECK_FALSE(*desk.model().showFilenames);
    CHECK_FALSE(*desk.model().showResolution);
    CHECK(*desk.model().slideshowInterval == 10);
    CHECK(*desk.model().slideshowShuffle);
}

TEST_CASE("a number set by hand is brought into its range before it is shown or stored")
{
    Desk desk;
    desk.model().setThumbSize(1000);
    desk.model().setSlideshowInterval(notANumber);
    CHECK(*desk.model().thumbSize == 400);
    CHECK(desk.preferences.values.at("thumbSize") == FakePreferences::Value(400.0));
    CHECK(*desk.model().slideshowInterval == 4);
    CHECK(desk.preferences.values.at("interval") == FakePreferences::Value(4.0));
}

TEST_CASE("a setting that is set to what it is already is stored all the same")
{
    Desk desk;
    desk.model().setAscending(true);
    CHECK(desk.preferences.values.at("ascending") == FakePreferences::Value(true));
}

TEST_CASE("paths are stored and read as bytes")
{
    FakePreferences preferences;
    FileUrl const folder("/bilder/gr\xFC\xDF");
    LastFolders::write(preferences, { folder });
    LastFolders::writeRoot(preferences, folder);
    auto const last = LastFolders::read(preferences);
    CHECK(last.folders == std::vector { folder });
    CHECK(last.root == folder);
}

TEST_CASE("stored paths that are none are left out")
{
    FakePreferences preferences;
    preferences.setTexts(
        "lastFolders", { "", "bilder", "/gut", std::string("/a\0b", 4), "/mit//strich/" });
    preferences.setText("lastRoot", "relativ");
    auto const last = LastFolders::read(preferences);
    CHECK(last.folders == std::vector { FileUrl("/gut"), FileUrl("/mit/strich") });
    CHECK_FALSE(last.root.has_value());
}
