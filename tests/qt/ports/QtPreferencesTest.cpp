#include "qt/ports/QtPreferences.h"
#include "qt/Wait.h"
#include "support/TemporaryFolder.h"
#include <QDir>
#include <QFileInfo>
#include <doctest/doctest.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

QString path(FileUrl const& url)
{
    return QString::fromUtf8(url.cString());
}

} // namespace

TEST_CASE("preferences survive a restart")
{
    TemporaryFolder folder;
    auto const file = path(folder.url()) + QStringLiteral("/new/pixelhain.ini");
    {
        QtPreferences preferences(file);
        CHECK_FALSE(preferences.text("sortKey"));
        preferences.setText("sortKey", "date");
        preferences.setNumber("thumbSize", 200);
        preferences.setBoolean("ascending", false);
        preferences.setTexts("lastFolders", { "/\xe4", "/b" });
        CHECK(preferences.number("thumbSize") == 200);
    }
    QtPreferences const again(file);
    CHECK(again.text("sortKey") == "date");
    CHECK(again.number("thumbSize") == 200);
    CHECK(again.boolean("ascending") == false);
    CHECK(again.texts("lastFolders") == std::vector<std::string> { "/\xe4", "/b" });
}

TEST_CASE("thousands of folders survive a restart, and the other settings with them")
{
    TemporaryFolder folder;
    auto const file = path(folder.url().child("pixelhain.ini"));
    std::vector<std::string> const folders(20'000, "/" + std::string(200, 'f'));
    {
        QtPreferences preferences(file);
        preferences.setNumber("thumbSize", 200);
        preferences.setTexts("lastFolders", folders);
    }
    QtPreferences const again(file);
    CHECK(again.number("thumbSize") == 200);
    CHECK(again.texts("lastFolders") == folders);
}

TEST_CASE("preferences are on the disk soon, not only at the end")
{
    TemporaryFolder folder;
    auto const file = path(folder.url().child("pixelhain.ini"));
    QtPreferences preferences(file);
    preferences.setNumber("interval", 6);
    CHECK(eventually([&] { return QtPreferences(file).number("interval") == 6; }));
}

TEST_CASE("a preference file full of garbage breaks nothing and becomes a good one")
{
    TemporaryFolder folder;
    std::string garbage;
    for (int i = 0; i < 100'000; ++i)
        garbage += static_cast<char>((i * 7919) % 256);
    auto const url = folder.file("pixelhain.ini", garbage);
    {
        QtPreferences preferences(path(url));
        CHECK_FALSE(preferences.number("thumbSize"));
        preferences.setNumber("thumbSize", 90);
    }
    CHECK(QtPreferences(path(url)).number("thumbSize") == 90);
}

TEST_CASE("a preference file that is a folder, or too large, counts as empty")
{
    TemporaryFolder folder;
    CHECK_FALSE(QtPreferences(path(folder.url())).text("sortKey"));
    auto const url = folder.file("pixelhain.ini", std::string(17 << 20, '\n') + "sortKey=date");
    CHECK_FALSE(QtPreferences(path(url)).text("sortKey"));
}

TEST_CASE("what is no file is never replaced, not even behind a link")
{
    TemporaryFolder folder;
    auto const pipe = folder.url().child("pipe");
    REQUIRE(::mkfifo(pipe.cString(), 0600) == 0);
    auto const link = folder.url().child("pixelhain.ini");
    REQUIRE(::symlink(pipe.cString(), link.cString()) == 0);
    {
        QtPreferences preferences(path(link));
        preferences.setNumber("thumbSize", 90);
    }
    CHECK(std::filesystem::is_symlink(link.path()));
    CHECK(std::filesystem::is_fifo(pipe.path()));
}

TEST_CASE("a link to a settings file stays a link")
{
    TemporaryFolder folder;
    auto const file = folder.file("kept.ini", "thumbSize=100\n");
    auto const link = folder.url().child("pixelhain.ini");
    REQUIRE(::symlink(file.cString(), link.cString()) == 0);
    {
        QtPreferences preferences(path(link));
        CHECK(preferences.number("thumbSize") == 100);
        preferences.setNumber("thumbSize", 90);
    }
    CHECK(std::filesystem::is_symlink(link.path()));
    CHECK(QtPreferences(path(file)).number("thumbSize") == 90);
}

TEST_CASE("writing leaves no other file behind")
{
    TemporaryFolder folder;
    {
        QtPreferences preferences(path(folder.url().child("pixelhain.ini")));
        for (int i = 0; i < 50; ++i)
            preferences.setNumber("thumbSize", i);
    }
    CHECK(QDir(path(folder.url())).entryList(QDir::Files | QDir::Hidden)
        == QStringList { QStringLiteral("pixelhain.ini") });
}

TEST_CASE("a folder that cannot be written costs the settings, not the program")
{
    QtPreferences preferences(QStringLiteral("/proc/nowhere/pixelhain.ini"));
    preferences.setNumber("interval", 6);
    CHECK(preferences.number("interval") == 6);
}
