#include "qt/ports/QtSharing.h"
#include "qt/Wait.h"
#include "qt/ports/BusService.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/UserTime.h"
#include "support/FakePrograms.h"
#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QMap>
#include <doctest/doctest.h>
#include <vector>

using namespace pixelhain;

namespace {

class FakeMailPortal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Email")
    Q_PROPERTY(uint version READ version)

public:
    QList<QStringList> mails; ///< the attachments of each
    bool fails = false;
    uint version() const { return 4; }

public slots:
    QDBusObjectPath ComposeEmail(QString const&, QVariantMap const& options)
    {
        QStringList attached;
        for (auto const& handle : qdbus_cast<QList<QDBusUnixFileDescriptor>>(
                 options.value(QStringLiteral("attachment_fds"))))
            attached += QFile::symLinkTarget(
                QStringLiteral("/proc/self/fd/%1").arg(handle.fileDescriptor()));
        mails += attached;
        if (fails)
            sendErrorReply(QDBusError::Failed);
        return QDBusObjectPath(QStringLiteral("/request"));
    }

private:
    BusService service_ { QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"), *this };
};

class FakeDevice final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kdeconnect.device.share")

public:
    QStringList received;

public slots:
    void shareUrl(QString const& url) { received += url; }
};

class FakeKdeConnect final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kdeconnect.daemon")

public:
    FakeKdeConnect() { qDBusRegisterMetaType<QMap<QString, QString>>(); }

    FakeDevice phone;

public slots:
    QMap<QString, QString> deviceNames(bool onlyReachable, bool onlyPaired)
    {
        if (!onlyReachable || !onlyPaired)
            return {};
        return { { QStringLiteral("a1"), QStringLiteral("Telefon") } };
    }

private:
    BusService service_ { QStringLiteral("org.kde.kdeconnect"),
        QStringLiteral("/modules/kdeconnect"), *this };
    bool hasPhone_ = service_.add(QStringLiteral("/modules/kdeconnect/devices/a1/share"), phone);
};

struct SharingDesk {
    FakePrograms programs { FakePrograms::Others::hidden };
    QtMainLoop loop;
    UserTime userTime;
    QtSharing sharing { loop, userTime };
    TemporaryFolder folder;
    std::vector<FileUrl> files { folder.file("1.jpg"), folder.file("2 \xe4.jpg") };

    using Titles = std::vector<std::string>;

    Titles titles() const
    {
        Titles all;
        for (auto const& service : sharing.services())
            all.push_back(service.title);
        return all;
    }

    // Looks until these are all there is.
    bool offers(Titles const& expected)
    {
        sharing.refresh();
        return eventually([&] { return titles() == expected; });
    }

    void share(std::string_view title)
    {
        for (auto const& service : sharing.services())
            if (service.title == title)
                sharing.share(service.id, files);
    }

    QString pathOf(std::size_t index) const { return QString::fromUtf8(files[index].cString()); }
    std::string path(std::size_t index) const { return std::string(files[index].path()); }
};

} // namespace

TEST_CASE("nothing is offered before anything was looked for, or where nothing is installed")
{
    SharingDesk desk;
    CHECK(desk.titles().empty());
    desk.programs.add("xdg-email");
    CHECK(desk.offers({ "E-Mail …" }));
    std::filesystem::remove(std::filesystem::path(desk.programs.folder().path()) / "xdg-email");
    CHECK(desk.offers({}));
}

TEST_CASE("the mail program gets every file as an attachment, with the bytes of its name")
{
    SharingDesk desk;
    desk.programs.add("xdg-email");
    REQUIRE(desk.offers({ "E-Mail …" }));
    desk.share("E-Mail …");
    REQUIRE(eventually([&] { return desk.programs.hasTold("xdg-email"); }));
    CHECK(desk.programs.told("xdg-email")
        == "--attach\n" + desk.path(0) + "\n--attach\n" + desk.path(1) + "\n\n.\n");
}

TEST_CASE("either Bluetooth program gets the files")
{
    for (std::string const program : { "bluetooth-sendto", "blueman-sendto" }) {
        SharingDesk desk;
        desk.programs.add(program);
        REQUIRE(desk.offers({ "Bluetooth …" }));
        desk.share("Bluetooth …");
        REQUIRE(eventually([&] { return desk.programs.hasTold(program); }));
        CHECK(desk.programs.told(program) == desk.path(0) + "\n" + desk.path(1) + "\n\n.\n");
    }
}

TEST_CASE("sharing nothing, or by what there is not, does nothing")
{
    SharingDesk desk;
    desk.programs.add("xdg-email");
    REQUIRE(desk.offers({ "E-Mail …" }));
    desk.sharing.share("mail", {});
    desk.sharing.share("bluetooth", desk.files);
    desk.sharing.share("telepathy", desk.files);
    desk.share("E-Mail …");
    REQUIRE(eventually([&] { return desk.programs.hasTold("xdg-email"); }));
    CHECK(desk.programs.told("xdg-email").find("--attach\n" + desk.path(0)) == 0);
}

TEST_CASE("the portal's mail gets the files as descriptors")
{
    if (!hasTestBus())
        return;
    FakeMailPortal portal;
    SharingDesk desk;
    REQUIRE(desk.offers({ "E-Mail …" }));
    desk.share("E-Mail …");
    REQUIRE(eventually([&] { return !portal.mails.isEmpty(); }));
    CHECK(portal.mails == QList<QStringList> { { desk.pathOf(0), desk.pathOf(1) } });
}

TEST_CASE("a portal that refuses leaves the mail to the mail program")
{
    if (!hasTestBus())
        return;
    FakeMailPortal portal;
    portal.fails = true;
    SharingDesk desk;
    REQUIRE(desk.offers({ "E-Mail …" }));
    desk.programs.add("xdg-email");
    desk.share("E-Mail …");
    REQUIRE(eventually([&] { return desk.programs.hasTold("xdg-email"); }));
    CHECK(portal.mails.size() == 1);
}

TEST_CASE("more files than may be open at once go to the mail program by name")
{
    if (!hasTestBus())
        return;
    FakeMailPortal portal;
    SharingDesk desk;
    REQUIRE(desk.offers({ "E-Mail …" }));
    desk.programs.add("xdg-email");
    desk.files.assign(QtSharing::mostDescriptors + 1, desk.files.front());
    desk.share("E-Mail …");
    REQUIRE(eventually([&] { return desk.programs.hasTold("xdg-email"); }));
    CHECK(portal.mails.isEmpty());
}

TEST_CASE("devices that are in reach are offered by name and get every file")
{
    if (!hasTestBus())
        return;
    FakeKdeConnect connect;
    SharingDesk desk;
    REQUIRE(desk.offers({ "KDE Connect: Telefon" }));
    desk.share("KDE Connect: Telefon");
    REQUIRE(eventually([&] { return connect.phone.received.size() == 2; }));
    CHECK(connect.phone.received.first() == QStringLiteral("file://") + desk.pathOf(0));
    CHECK(connect.phone.received.last().endsWith(QStringLiteral("/2%20%E4.jpg")));
}

#include "QtSharingTest.moc"
