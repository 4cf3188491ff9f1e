#include "qt/ports/QtWorkspace.h"
#include "qt/Wait.h"
#include "qt/ports/BusService.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/SessionBus.h"
#include "qt/ports/UserTime.h"
#include "support/FakePrograms.h"
#include <QApplication>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QKeyEvent>
#include <QWidget>
#include <doctest/doctest.h>
#include <vector>

using namespace pixelhain;

namespace {

class FakeFileManager final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QList<QStringList> shown;
    QStringList startupIds;
    bool fails = false;
    bool isSilent = false;

public slots:
    void ShowItems(QStringList const& uris, QString const& startupId)
    {
        shown += uris;
        startupIds += startupId;
        if (isSilent)
            setDelayedReply(true);
        else if (fails)
            sendErrorReply(QDBusError::Failed);
    }

private:
    BusService service_ { QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"), *this };
};

class FakeOpenPortal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

public:
    QStringList opened; ///< the method and what its descriptor stands for
    bool fails = false;

public slots:
    QDBusObjectPath OpenFile(
        QString const&, QDBusUnixFileDescriptor const& handle, QVariantMap const&)
    {
        return take(QStringLiteral("file "), handle);
    }
    QDBusObjectPath OpenDirectory(
        QString const&, QDBusUnixFileDescriptor const& handle, QVariantMap const&)
    {
        return take(QStringLiteral("folder of "), handle);
    }

private:
    QDBusObjectPath take(QString const& what, QDBusUnixFileDescriptor const& handle)
    {
        auto const link = QStringLiteral("/proc/self/fd/%1").arg(handle.fileDescriptor());
        opened += what + QFile::symLinkTarget(link);
        if (fails)
            sendErrorReply(QDBusError::Failed);
        return QDBusObjectPath(QStringLiteral("/request"));
    }

    BusService service_ { QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"), *this };
};

struct WorkspaceDesk {
    QtMainLoop loop;
    UserTime userTime;
    QtWorkspace workspace { loop, userTime };
    TemporaryFolder folder;
    FileUrl one = folder.file("1.jpg");
    FileUrl two = folder.file("2 \xe4.jpg");

    QString pathOf(FileUrl const& url) const { return QString::fromUtf8(url.cString()); }
    std::string told(FakePrograms const& programs) const { return programs.told("xdg-open"); }
};

} // namespace

TEST_CASE("all files are shown by one call of the file manager, in their order")
{
    if (!hasTestBus())
        return;
    FakeFileManager manager;
    WorkspaceDesk desk;
    std::vector const files { desk.two, desk.one };
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return !manager.shown.isEmpty(); }));
    CHECK(manager.shown.size() == 1);
    CHECK(manager.shown.first()
        == QStringList { QString::fromStdString(
                             "file://" + std::string(desk.folder.url().path()) + "/2%20%E4.jpg"),
            QString::fromStdString("file://" + std::string(desk.one.path())) });
}

TEST_CASE("ten thousand files are shown by one call")
{
    if (!hasTestBus())
        return;
    FakeFileManager manager;
    WorkspaceDesk desk;
    std::vector<FileUrl> files;
    for (int i = 0; i < 10'000; ++i)
        files.push_back(FileUrl("/Fotos/" + std::to_string(i) + ".jpg"));
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return !manager.shown.isEmpty(); }));
    CHECK(manager.shown.first().size() == 10'000);
}

TEST_CASE("without files nobody is called")
{
    if (!hasTestBus())
        return;
    FakeFileManager manager;
    WorkspaceDesk desk;
    desk.workspace.reveal({});
    std::vector const files { desk.one };
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return !manager.shown.isEmpty(); }));
    CHECK(manager.shown.size() == 1);
    CHECK(manager.shown.first().size() == 1);
}

TEST_CASE("where no file manager has the name, the portal shows the first file in its folder")
{
    if (!hasTestBus())
        return;
    FakeOpenPortal portal;
    WorkspaceDesk desk;
    std::vector const files { desk.one, desk.two };
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return !portal.opened.isEmpty(); }));
    CHECK(portal.opened == QStringList { QStringLiteral("folder of ") + desk.pathOf(desk.one) });
}

TEST_CASE("where the portal refuses too, the folder is opened in the default application")
{
    if (!hasTestBus())
        return;
    FakePrograms programs;
    programs.add("xdg-open");
    FakeFileManager manager;
    manager.fails = true;
    FakeOpenPortal portal;
    portal.fails = true;
    WorkspaceDesk desk;
    std::vector const files { desk.one };
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return programs.hasTold("xdg-open"); }));
    CHECK(manager.shown.size() == 1);
    CHECK(portal.opened.size() == 1);
    CHECK(desk.told(programs) == "file://" + std::string(desk.folder.url().path()) + "\n\n.\n");
}

TEST_CASE("without a bus the folder is opened in the default application")
{
    if (hasSessionBus())
        return;
    FakePrograms programs;
    programs.add("xdg-open");
    WorkspaceDesk desk;
    std::vector const files { desk.one };
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return programs.hasTold("xdg-open"); }));
    CHECK(desk.told(programs) == "file://" + std::string(desk.folder.url().path()) + "\n\n.\n");
}

TEST_CASE("a file manager that does not answer holds nothing up and is not called twice")
{
    if (!hasTestBus())
        return;
    FakeFileManager manager;
    manager.isSilent = true;
    FakePrograms programs;
    programs.add("xdg-open");
    WorkspaceDesk desk;
    std::vector const files { desk.one };
    desk.workspace.reveal(files);
    REQUIRE(eventually([&] { return !manager.shown.isEmpty(); }));
    desk.workspace.open(desk.one);
    REQUIRE(eventually([&] { return programs.hasTold("xdg-open"); }));
    CHECK(desk.told(programs) == "file://" + std::string(desk.one.path()) + "\n\n.\n");
    CHECK(manager.shown.size() == 1);
}

TEST_CASE("files open one by one in their order, each in the desktop's application for it")
{
    FakePrograms programs;
    programs.add("xdg-open");
    WorkspaceDesk desk;
    desk.workspace.open(desk.two);
    REQUIRE(eventually([&] { return programs.hasTold("xdg-open"); }));
    desk.workspace.open(desk.one);
    auto const folder = "file://" + std::string(desk.folder.url().path());
    REQUIRE(eventually([&] {
        return desk.told(programs) == folder + "/2%20%E4.jpg\n\n.\n" + folder + "/1.jpg\n\n.\n";
    }));
}

TEST_CASE("where there is no opener, the portal opens the file by its descriptor")
{
    if (!hasTestBus())
        return;
    FakePrograms const none(FakePrograms::Others::hidden);
    FakeOpenPortal portal;
    WorkspaceDesk desk;
    desk.workspace.open(desk.one);
    REQUIRE(eventually([&] { return !portal.opened.isEmpty(); }));
    CHECK(portal.opened == QStringList { QStringLiteral("file ") + desk.pathOf(desk.one) });
}

TEST_CASE("a workspace may go while calls are on their way")
{
    FakePrograms programs;
    programs.add("xdg-open");
    QtMainLoop loop;
    UserTime userTime;
    TemporaryFolder folder;
    std::vector const files { folder.file("1.jpg") };
    {
        QtWorkspace workspace(loop, userTime);
        for (int i = 0; i < 20; ++i) {
            workspace.reveal(files);
            workspace.open(files.front());
        }
    }
    QCoreApplication::processEvents();
    CHECK(std::filesystem::exists(std::filesystem::path(files.front().path())));
}

TEST_CASE("programs are told of the user's last key or click, so that they may come to the front")
{
    if (QApplication::platformName() != QStringLiteral("xcb"))
        return;
    FakePrograms programs;
    programs.add("xdg-open", "DESKTOP_STARTUP_ID");
    WorkspaceDesk desk;
    QWidget window;
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    key.setTimestamp(4711);
    QCoreApplication::sendEvent(&window, &key);
    desk.workspace.open(desk.one);
    REQUIRE(eventually([&] { return programs.hasTold("xdg-open"); }));
    CHECK(desk.told(programs).ends_with("_TIME4711\n.\n"));
}

#include "QtWorkspaceTest.moc"
